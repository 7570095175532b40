// elf_tables/lines.h
// The columns of both texts.
#pragma once

#include <array>
#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>

namespace tova_fw_builder {

// Hexadecimal, at least eight digits.
inline std::string digits(std::uint64_t number) {
  std::array<char, 16> text;
  const auto end =
      std::to_chars(text.data(), text.data() + text.size(), number, 16).ptr;
  const auto count = static_cast<std::size_t>(end - text.data());
  std::string padded(count < 8 ? 8 - count : 0, '0');
  return padded.append(text.data(), count);
}

// With blanks up to `width`: behind the text, or ahead of it if that is below
// zero.
inline std::string padded(std::string_view text, int width) {
  const auto wanted = static_cast<std::size_t>(width < 0 ? -width : width);
  std::string blanks(text.size() < wanted ? wanted - text.size() : 0, ' ');
  return width < 0 ? blanks.append(text) : std::string(text).append(blanks);
}

// What of a name stands in a line. The builder takes 1023 characters of a line,
// and a file may name one text of any length any number of times.
inline std::string_view name_in_line(std::string_view name) {
  return name.substr(0, 1023);
}

}  // namespace tova_fw_builder
