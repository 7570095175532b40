#include "companion/ground/message_text.h"

#include <algorithm>
#include <charconv>

namespace tova_fw_builder {

std::string counted(std::uint64_t number, std::string_view noun) {
  std::string text = std::to_string(number) + ' ';
  return text.append(noun).append(number == 1 ? "" : "s");
}

std::string hex_number(std::uint64_t number) {
  char digits[16];
  const auto end = std::to_chars(digits, digits + 16, number, 16).ptr;
  return "0x" + std::string(digits, end);
}

std::string eight_digits(std::uint64_t number) {
  // The zeros in front are there already where there is room for them.
  char digits[8 + 16] = {'0', '0', '0', '0', '0', '0', '0', '0'};
  const char* const end =
      std::to_chars(digits + 8, digits + 24, number, 16).ptr;
  return {std::min<const char*>(digits + 8, end - 8), end};
}

}  // namespace tova_fw_builder
