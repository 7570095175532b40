// definitions/statement.h
// One line of a definition file, taken word by word.
#pragma once

#include <cstdint>
#include <string_view>

namespace tova_fw_builder {

// The words of a line, split at white space. When none is left, the word taken
// last comes again: a statement whose operand is missing takes the word before
// it, which as a rule is its own key, and definition files rely on that.
//
// It looks into the line that it is made from and must not outlive it.
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

  // next_word() as a number, by the rules and with the failure texts of
  // parse_signed and parse_unsigned.
  std::int32_t next_signed(int base);
  std::uint32_t next_unsigned(int base);

  // What follows the words taken so far, with its white space.
  std::string_view rest() const { return rest_; }

  // True when the last word taken, or the white space passed over in vain,
  // reached the end of the line. White space BEHIND a word isn't passed over
  // with it, so a loop that reads words until this holds gets the last one
  // twice.
  bool at_end() const { return rest_.empty(); }

 private:
  bool take(std::string_view& word);

  std::string_view rest_;
  std::string_view word_;
};

}  // namespace tova_fw_builder
