#include "lint/findings.h"

#include <charconv>

namespace tova_fw_builder {

std::string quoted(std::string_view word) {
  constexpr std::size_t kLongest = 60;
  std::string text = "'";
  text.append(word.substr(0, kLongest));
  return text.append(word.size() > kLongest ? "...'" : "'");
}

std::string count_text(std::size_t number, std::string_view noun) {
  std::string text = std::to_string(number) + ' ';
  return text.append(noun).append(number == 1 ? "" : "s");
}

std::string hex_text(std::uint64_t number) {
  char digits[16];
  const auto end = std::to_chars(digits, digits + 16, number, 16).ptr;
  return "0x" + std::string(digits, end);
}

}  // namespace tova_fw_builder
