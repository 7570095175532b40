#include "definitions/block_reader.h"

namespace tova_fw_builder {

namespace {

std::string cfg_file_error_text(std::uint64_t line,
                                std::optional<std::string_view> parameter,
                                std::string_view message) {
  std::string text = std::to_string(line) + ": ";
  if (parameter) text.append("[").append(*parameter).append("] ");
  return text.append(message);
}

}  // namespace

CfgFileError::CfgFileError(std::uint64_t line,
                           std::optional<std::string_view> parameter,
                           std::string_view message)
    : std::runtime_error(cfg_file_error_text(line, parameter, message)) {}

std::string StatementLines::take() {
  // Not counted again: it has its number.
  if (!held_.empty()) return std::exchange(held_, {});
  ++number_;
  std::string line;
  std::getline(stream_, line);
  return line;
}

}  // namespace tova_fw_builder
