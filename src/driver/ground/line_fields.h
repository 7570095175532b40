// driver/ground/line_fields.h
// The words and numbers of one line.
#pragma once

#include <cstdint>
#include <string_view>

namespace tova_fw_builder {

// Takes fields from a line by the rules of formatted stream extraction, to the
// letter, without the cost of a stream for each of a million lines. Each field
// skips the white space ahead of it. One that isn't there fails the object,
// which yields nothing more until it is cleared; Statement, which definitions
// are read by, has the last word come again instead. The line must outlive
// object and words.
class LineFields {
 public:
  LineFields() = default;
  explicit LineFields(std::string_view line) : rest_(line) {}

  // A number in `base`, 10 or 16: optional sign, in base 16 an optional "0x",
  // digits. The next field goes on where it ends: "10T" is 10 and the character
  // T. A minus sign negates modulo 2^32, or 2^64 if wide. No digit (as in "0x"
  // alone) fails and yields 0; a number of more bits fails and yields all ones.
  std::uint32_t number(int base);
  std::uint64_t wide_number(int base);

  // One character; 0 when none is left.
  char character();

  // The characters up to the next white space; empty when none is left.
  std::string_view word();

  bool failed() const { return failed_; }
  void clear() { failed_ = false; }

  // Whether the last field reached the end; white space behind it is still
  // there.
  bool at_end() const { return rest_.empty(); }

 private:
  // Yields whether a field can be taken.
  bool skip_white_space();

  std::string_view rest_;
  bool failed_ = false;
};

}  // namespace tova_fw_builder
