// definitions/statement.h
// The words of one line of the definitions.
#pragma once

#include <cstdint>
#include <string_view>

namespace tova_fw_builder {

// The words of a line, split at white space. When none is left, the word taken
// last comes again, as a rule the statement's key; definition files rely on
// that. LineFields of linker output has other rules: there the word that isn't
// there is empty. The line must outlive the object.
class Statement {
 public:
  // Takes the first word, the key; empty if the line is blank.
  explicit Statement(std::string_view line) : rest_(line) { take(word_); }

  // The word taken last, by any of the functions but next_operand.
  std::string_view word() const { return word_; }

  // The next word, or the last one once more.
  std::string_view next_word();

  // The next word, or an empty text.
  std::string_view next_operand();

  // next_word() by parse_signed and parse_unsigned, with their failures.
  std::int32_t next_signed(int base);
  std::uint32_t next_unsigned(int base);

  // What follows the words taken so far, with its white space.
  std::string_view rest() const { return rest_; }

  // Whether the last word, or white space passed over in vain, reached the end.
  // A blank BEHIND a word doesn't go with it: a loop until here gets that word
  // twice.
  bool at_end() const { return rest_.empty(); }

 private:
  bool take(std::string_view& word);

  std::string_view rest_;
  std::string_view word_;
};

}  // namespace tova_fw_builder
