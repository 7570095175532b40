#include "companion/ground/colour.h"

#include <cstdlib>
#include <string_view>

#include "companion/ground/system_files.h"

namespace tova_fw_builder {
namespace {

std::string_view environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

}  // namespace

bool wants_colour(ColourWhen when) {
  if (when != ColourWhen::kAuto) return when == ColourWhen::kAlways;
  return environment("NO_COLOR").empty() && environment("TERM") != "dumb" &&
         standard_output_is_terminal();
}

Colours colours(bool wanted) {
  if (!wanted) return {};
  return {.bold = "\033[1m",
          .faint = "\033[2m",
          .good = "\033[32m",
          .bad = "\033[31m",
          .plain = "\033[0m"};
}

}  // namespace tova_fw_builder
