#include "inspect/compare/folder_parts.h"

#include <algorithm>

namespace tova_fw_builder {
namespace {

constexpr std::string_view kBlanks = " \t\r";
constexpr std::string_view kSeparators = "/\\";

// Takes the next word, with the blanks ahead of it, off a text.
std::string_view next_word(std::string_view& text) {
  const std::size_t begin =
      std::min(text.find_first_not_of(kBlanks), text.size());
  const std::size_t end =
      std::min(text.find_first_of(kBlanks, begin), text.size());
  const std::string_view word = text.substr(0, end);
  text.remove_prefix(end);
  return word;
}

// What follows the last separator; nothing for a word that names no file in a
// folder.
std::string_view file_name(std::string_view word) {
  const std::size_t separator = word.find_last_of(kSeparators);
  return separator == word.npos ? "" : word.substr(separator + 1);
}

}  // namespace

bool differ_in_folders(std::string_view old_text, std::string_view new_text) {
  if (old_text == new_text) return false;
  while (!old_text.empty() || !new_text.empty()) {
    const std::string_view old_word = next_word(old_text);
    const std::string_view new_word = next_word(new_text);
    if (old_word == new_word) continue;
    const std::string_view name = file_name(old_word);
    if (name.empty() || name != file_name(new_word)) return false;
  }
  return true;
}

}  // namespace tova_fw_builder
