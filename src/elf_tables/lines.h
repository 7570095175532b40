// elf_tables/lines.h
// The columns of both texts.
#pragma once

#include <string>
#include <string_view>

#include "driver/ground/line_reader.h"

namespace tova_fw_builder {

// With blanks up to `width`: behind the text, or ahead of it if that is below
// zero.
inline std::string padded(std::string_view text, int width) {
  const auto wanted = static_cast<std::size_t>(width < 0 ? -width : width);
  std::string blanks(text.size() < wanted ? wanted - text.size() : 0, ' ');
  return width < 0 ? blanks.append(text) : std::string(text).append(blanks);
}

// What of a name stands in a line, as much as the builder takes of one: a file
// may name one text of any length any number of times.
inline std::string_view name_in_line(std::string_view name) {
  return name.substr(0, kLongestLine);
}

}  // namespace tova_fw_builder
