// Fields of one line, taken as a stream in the classic locale takes them.
#include "driver/ground/line_fields.h"

#include <algorithm>
#include <limits>

#include "driver/ground/numbers.h"

namespace tova_fw_builder {

// A number that fails is consumed all the same, as by a stream.
std::uint32_t LineFields::number(int base) {
  if (!skip_white_space()) return 0;
  const ScannedNumber number = scan_number(rest_, base);
  rest_.remove_prefix(number.length);
  failed_ = !number.has_digits ||
            number.magnitude > std::numeric_limits<std::uint32_t>::max();
  return clamped_unsigned(number);
}

std::uint64_t LineFields::wide_number(int base) {
  if (!skip_white_space()) return 0;
  const ScannedNumber number = scan_number(rest_, base);
  rest_.remove_prefix(number.length);
  failed_ = !number.has_digits || number.overflow;
  return number.negative && !number.overflow ? 0 - number.magnitude
                                             : number.magnitude;
}

char LineFields::character() {
  if (!skip_white_space()) return 0;
  const char c = rest_.front();
  rest_.remove_prefix(1);
  return c;
}

std::string_view LineFields::word() {
  if (!skip_white_space()) return {};
  const auto end = std::find_if(rest_.begin(), rest_.end(), is_white_space);
  const std::string_view word(rest_.begin(), end);
  rest_.remove_prefix(word.size());
  return word;
}

bool LineFields::skip_white_space() {
  if (failed_) return false;
  const auto start =
      std::find_if_not(rest_.begin(), rest_.end(), is_white_space);
  rest_ = {start, rest_.end()};
  failed_ = rest_.empty();
  return !failed_;
}

}  // namespace tova_fw_builder
