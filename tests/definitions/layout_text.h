// tests/definitions/layout_text.h
#pragma once

#include <sstream>
#include <string>

#include "definitions/image_layout.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {

inline void read_text(FwOutMap& map, const std::string& text) {
  read_image_layout(map, std::make_unique<std::stringstream>(text));
}

// Reads statements in the form in which they come from a file: with a blank
// behind the last word of each line.
inline FwOutMap read_layout(const std::string& statements) {
  FwOutMap map;
  map.consts = {{"CORES", 3}, {"7", 70}, {"NONE", 0}, {"FACE", 1}};
  std::string text;
  for (const char c : statements) text += c == '\n' ? " \n" : std::string(1, c);
  read_text(map, text);
  return map;
}

inline std::string layout_failure(const std::string& statements) {
  return message_of([&] { read_layout(statements); });
}

}  // namespace tova_fw_builder
