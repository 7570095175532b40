#include "companion/ground/message_text.h"

#include <charconv>

#include "companion/ground/byte_text.h"

namespace tova_fw_builder {

namespace {

// The bytes of the UTF-8 character that `text` begins with; 0 if it begins
// with none, or with a control character.
std::size_t character_length(std::string_view text) {
  const auto byte = [&text](std::size_t i) -> unsigned {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0;
  };
  const unsigned first = byte(0);
  if (first < 0x80) return first >= 0x20 && first != 0x7F ? 1 : 0;
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
  }
  const unsigned second = byte(1);
  const bool refused = (first == 0xC2 && second < 0xA0) ||   // C1 controls
                       (first == 0xE0 && second < 0xA0) ||   // overlong
                       (first == 0xED && second >= 0xA0) ||  // surrogates
                       (first == 0xF0 && second < 0x90) ||
                       (first == 0xF4 && second >= 0x90);
  return refused ? 0 : length;
}

}  // namespace

std::string printable(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const std::size_t length = character_length(text);
    if (length == 0) result += "\\x" + hexadecimal(text.substr(0, 1));
    result += text.substr(0, length);
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return result;
}

std::string counted(std::uint64_t number, std::string_view noun) {
  std::string text = std::to_string(number) + ' ';
  return text.append(noun).append(number == 1 ? "" : "s");
}

std::string hex_number(std::uint64_t number) {
  char digits[16];
  const auto end = std::to_chars(digits, digits + 16, number, 16).ptr;
  return "0x" + std::string(digits, end);
}

}  // namespace tova_fw_builder
