// input_map/line_fields.h
// Fields of one line of linker output.
#pragma once

#include <cstdint>
#include <string_view>

namespace tova_fw_builder {

// Takes fields from a line with the rules of formatted stream extraction, to
// the letter, without the cost of a stream for each of a million lines. Each
// field skips the white space ahead of it. A field that isn't there fails the
// object, and a failed object yields nothing more.
//
// The line's text must outlive the object and the words that it yields.
class LineFields {
 public:
  explicit LineFields(std::string_view line) : rest_(line) {}

  // A number in `base`, 10 or 16: optional sign, in base 16 an optional "0x"
  // or "0X", digits. It ends at the first other character, where the next
  // field goes on: "10T" is the number 10 and the character T.
  //
  // A minus sign negates modulo 2^32. No digit (as in "0x" alone) fails and
  // yields 0; a number of more than 32 bits fails and yields FFFFFFFF.
  std::uint32_t number(unsigned base);

  // One character; 0 when none is left.
  char character();

  // The characters up to the next white space; empty when none is left.
  std::string_view word();

  bool failed() const { return failed_; }

 private:
  // Yields whether a field can be taken.
  bool skip_white_space();

  std::string_view rest_;
  bool failed_ = false;
};

}  // namespace tova_fw_builder
