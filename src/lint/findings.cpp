#include "lint/findings.h"

#include "companion/ground/printable.h"

namespace tova_fw_builder {

std::string_view level_name(Level level) {
  return level == Level::kError ? "error" : "warning";
}

std::string in_quotes(std::string_view word) {
  constexpr std::size_t kMostCharacters = 60;
  constexpr std::size_t kMostBytes = 4 * kMostCharacters;
  // What isn't UTF-8 may have a character of any length.
  const std::size_t length =
      length_of_characters(word.substr(0, kMostBytes), kMostCharacters);
  std::string text = "'";
  text.append(word.substr(0, length));
  return text.append(length < word.size() ? "...'" : "'");
}

}  // namespace tova_fw_builder
