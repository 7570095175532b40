// Fields of one line, taken as a stream in the classic locale takes them.
#include "input_map/line_fields.h"

#include <algorithm>
#include <limits>

#include "driver/text_reader.h"

namespace tova_fw_builder {

namespace {

constexpr std::uint32_t kMax32 = std::numeric_limits<std::uint32_t>::max();

// Takes the sign; yields whether it is a minus.
bool take_sign(std::string_view& text) {
  if (text.front() != '-' && text.front() != '+') return false;
  const bool minus = text.front() == '-';
  text.remove_prefix(1);
  return minus;
}

bool has_hex_prefix(std::string_view text) {
  return text.size() >= 2 && text[0] == '0' &&
         (text[1] == 'x' || text[1] == 'X');
}

}  // namespace

std::uint32_t LineFields::number(unsigned base) {
  if (!skip_white_space()) return 0;
  const bool negative = take_sign(rest_);
  if (base == 16 && has_hex_prefix(rest_)) rest_.remove_prefix(2);
  std::uint64_t value = 0;
  std::size_t digits = 0;
  for (; digits < rest_.size(); ++digits) {
    const int digit = hex_digit_value(rest_[digits]);
    if (digit < 0 || digit >= static_cast<int>(base)) break;
    // Stays above 32 bits once it is there, without ever leaving 64.
    value = std::min<std::uint64_t>(value, kMax32 + std::uint64_t{1}) * base +
            static_cast<unsigned>(digit);
  }
  rest_.remove_prefix(digits);
  failed_ = digits == 0 || value > kMax32;
  if (value > kMax32) return kMax32;
  const auto number = static_cast<std::uint32_t>(value);
  return negative ? 0 - number : number;
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
