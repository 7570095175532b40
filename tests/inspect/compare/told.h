// tests/inspect/compare/told.h
// Changes as text, a line each, for tests.
#pragma once

#include <string>
#include <vector>

#include "inspect/compare/change.h"
#include "inspect/text.h"

namespace tova_fw_builder {

// "SCOPE.PATH OLD -> NEW", or "SCOPE.PATH OLD_LENGTH -> NEW_LENGTH, DIFFER in
// PAGES, first FIRST" of bytes; behind it "moved" and the reason of an echo.
inline std::string told(const std::vector<Change>& changes) {
  std::string text;
  for (const Change& change : changes) {
    if (!change.file.empty()) text += change.file + ": ";
    text += change.scope + change.path + ' ';
    if (change.bytes) {
      const ByteDifference& bytes = *change.bytes;
      text += std::to_string(bytes.old_length) + " -> " +
              std::to_string(bytes.new_length) + ", " +
              std::to_string(bytes.bytes) + " in " +
              std::to_string(bytes.pages) + ", first " +
              std::to_string(bytes.first);
    } else {
      text +=
          value_text(change.old_value) + " -> " + value_text(change.new_value);
    }
    if (change.is_moved) text += ", moved";
    if (!change.echo.empty()) text += " [" + std::string(change.echo) + ']';
    text += '\n';
  }
  return text;
}

}  // namespace tova_fw_builder
