// Number conversions. All of them share one scanner, so the rules of each
// conversion stand in one place each.
#include "driver/ground/numbers.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <stdexcept>
#include <system_error>

namespace tova_fw_builder {

namespace {

constexpr std::uint32_t kMax32 = std::numeric_limits<std::uint32_t>::max();

bool has_hex_prefix(std::string_view text) {
  return text.size() >= 2 && text[0] == '0' &&
         (text[1] == 'x' || text[1] == 'X');
}

// A "0x" without a digit behind it is the number 0, whose last character is
// the "0".
bool is_number(const ScannedNumber& number) {
  return number.has_digits || number.prefixed;
}

}  // namespace

ScannedNumber scan_number(std::string_view text, int base) {
  ScannedNumber number;
  const char* const begin = text.data();
  const char* const end = begin + text.size();
  text.remove_prefix(static_cast<std::size_t>(
      std::find_if_not(text.begin(), text.end(), is_white_space) -
      text.begin()));
  // Sign and prefix are taken here, since std::from_chars knows neither.
  if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
    number.negative = text.front() == '-';
    text.remove_prefix(1);
  }
  number.prefixed = (base == 0 || base == 16) && has_hex_prefix(text);
  if (number.prefixed) {
    base = 16;
    text.remove_prefix(2);
  } else if (base == 0) {
    // The 0 stays: alone it is the number.
    base = text.starts_with('0') ? 8 : 10;
  }
  const auto digits = std::from_chars(text.data(), end, number.magnitude, base);
  number.has_digits = digits.ptr != text.data();
  number.overflow = digits.ec == std::errc::result_out_of_range;
  // std::from_chars has left it untouched, but taken all digits.
  if (number.overflow) number.magnitude = ~std::uint64_t{0};
  number.length = static_cast<std::size_t>(digits.ptr - begin);
  return number;
}

std::uint32_t clamped_unsigned(const ScannedNumber& number) {
  // A negative one too: -100000000 is all ones, not 0.
  if (number.magnitude > kMax32) return kMax32;
  const auto value = static_cast<std::uint32_t>(number.magnitude);
  return number.negative ? 0 - value : value;
}

std::int32_t parse_signed(std::string_view text, int base) {
  const ScannedNumber number = scan_number(text, base);
  if (!is_number(number)) throw std::invalid_argument("invalid stoi argument");
  // One more below zero than above.
  const std::uint64_t limit = number.negative ? 0x80000000u : 0x7FFFFFFFu;
  if (number.magnitude > limit) {
    throw std::out_of_range("stoi argument out of range");
  }
  const auto value = static_cast<std::int64_t>(number.magnitude);
  return static_cast<std::int32_t>(number.negative ? -value : value);
}

std::uint32_t parse_unsigned(std::string_view text, int base) {
  const ScannedNumber number = scan_number(text, base);
  if (!is_number(number)) throw std::invalid_argument("invalid stoul argument");
  if (number.magnitude > kMax32) {
    throw std::out_of_range("stoul argument out of range");
  }
  return clamped_unsigned(number);
}

std::uint32_t hex_or_zero(std::string_view text) {
  return clamped_unsigned(scan_number(text, 16));
}

std::uint32_t any_base_or_zero(std::string_view text) {
  return clamped_unsigned(scan_number(text, 0));
}

std::uint32_t decimal_or_zero(std::string_view text) {
  const ScannedNumber number = scan_number(text, 10);
  constexpr std::uint64_t kMax = std::numeric_limits<std::int64_t>::max();
  const std::uint64_t value =
      std::min(number.magnitude, number.negative ? kMax + 1 : kMax);
  return static_cast<std::uint32_t>(number.negative ? 0 - value : value);
}

}  // namespace tova_fw_builder
