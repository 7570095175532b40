// What two files of one image would tell alike is told once.
#include "inspect/check/check_lines.h"

#include <algorithm>

namespace tova_fw_builder {

std::string_view result_name(CheckResult result) {
  constexpr std::string_view kNames[] = {"ok", "FAILED", "not checked"};
  return kNames[static_cast<std::size_t>(result)];
}

void Report::add(CheckResult result, std::string file, std::string text,
                 bool is_gap) {
  const bool is_told = std::ranges::any_of(lines_, [&](const CheckLine& line) {
    return line.id == id_ && line.result == result && line.file == file &&
           line.text == text;
  });
  if (!is_told) {
    lines_.push_back({id_, result, std::move(file), std::move(text), is_gap});
  }
}

}  // namespace tova_fw_builder
