// companion/ground/colour.h
#pragma once

namespace tova_fw_builder {

// What --color asks for.
enum class ColourWhen { kAuto, kAlways, kNever };

// Whether the standard output gets colour. kAuto: if it is a terminal that can
// show it, and the environment has no NO_COLOR with a value.
bool wants_colour(ColourWhen when);

// The escape sequences, empty when there is no colour.
struct Colours {
  const char* bold = "";
  const char* faint = "";
  const char* good = "";
  const char* bad = "";
  const char* plain = "";  // ends each of the others
};
Colours colours(bool wanted);

}  // namespace tova_fw_builder
