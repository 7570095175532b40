// Of what is no printable UTF-8 a single byte is marked, so that a character
// cut off hides nothing of the next one.
#include "companion/ground/printable.h"

#include <algorithm>

#include "companion/ground/byte_text.h"

namespace tova_fw_builder {

namespace {

// What a terminal obeys instead of showing it, beyond ASCII: C1 controls, marks
// that change the direction of text, and ends of lines and paragraphs.
bool steers(unsigned character) {
  return (character >= 0x80 && character < 0xA0) || character == 0x061C ||
         character == 0x200E || character == 0x200F ||
         (character >= 0x2028 && character <= 0x202E) ||
         (character >= 0x2066 && character <= 0x2069);
}

}  // namespace

std::size_t printable_length(std::string_view text) {
  const auto byte = [&text](std::size_t i) -> unsigned {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0;
  };
  const unsigned first = byte(0);
  if (first < 0x80) return first >= 0x20 && first != 0x7F ? 1 : 0;
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if (i >= text.size() || !is_continuation(text[i])) return 0;
  }
  const unsigned second = byte(1);
  const unsigned character =
      length == 2
          ? (first & 0x1F) << 6 | (second & 0x3F)
          : (first & 0x0F) << 12 | (second & 0x3F) << 6 | (byte(2) & 0x3F);
  const bool refused = (length < 4 && steers(character)) ||
                       (first == 0xE0 && second < 0xA0) ||   // overlong
                       (first == 0xED && second >= 0xA0) ||  // surrogates
                       (first == 0xF0 && second < 0x90) ||
                       (first == 0xF4 && second >= 0x90);
  return refused ? 0 : length;
}

std::string printable(std::string_view text) {
  const auto is_plain = [](char c) { return c >= 0x20 && c < 0x7F; };
  if (std::ranges::all_of(text, is_plain)) return std::string(text);
  std::string result;
  while (!text.empty()) {
    const std::size_t length = printable_length(text);
    if (length == 0) result += "\\x" + hexadecimal(text.substr(0, 1));
    result += text.substr(0, length);
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return result;
}

std::size_t length_of_characters(std::string_view text, std::size_t count) {
  std::size_t length = 0;
  for (; count > 0 && length < text.size(); --count) {
    ++length;
    while (length < text.size() && is_continuation(text[length])) ++length;
  }
  return length;
}

std::size_t count_characters(std::string_view text) {
  std::size_t count = 0;
  for (const char c : text) count += is_continuation(c) ? 0 : 1;
  return count;
}

bool is_continuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

}  // namespace tova_fw_builder
