// Number conversions. All of them share one scanner, which collects sign and
// magnitude and notes an overflow of 64 bits; the rules of each conversion
// then stand in one place each.
#include "driver/numbers.h"

#include <limits>
#include <stdexcept>
#include <string>

#include "driver/text_reader.h"

namespace tova_fw_builder {

namespace {

constexpr std::uint32_t kMax32 = std::numeric_limits<std::uint32_t>::max();

struct Scanned {
  bool has_digits = false;
  bool negative = false;
  bool overflow = false;  // magnitude doesn't fit 64 bits
  std::uint64_t magnitude = 0;
};

bool has_hex_prefix(std::string_view text) {
  return text.size() >= 2 && text[0] == '0' &&
         (text[1] == 'x' || text[1] == 'X');
}

// `base` 0 chooses by prefix. A "0x" without a digit behind it is the number
// 0, whose last character is the "0".
Scanned scan(std::string_view text, int base) {
  Scanned result;
  while (!text.empty() && is_white_space(text.front())) text.remove_prefix(1);
  if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
    result.negative = text.front() == '-';
    text.remove_prefix(1);
  }
  const bool prefixed = (base == 0 || base == 16) && has_hex_prefix(text);
  if (base == 0 && !prefixed) {
    base = !text.empty() && text.front() == '0' ? 8 : 10;
  }
  if (prefixed) {
    base = 16;
    result.has_digits = true;
    text.remove_prefix(2);
  }
  for (const char c : text) {
    const int digit = hex_digit_value(c);
    if (digit < 0 || digit >= base) break;
    const auto wide = static_cast<unsigned>(base);
    result.has_digits = true;
    if (result.magnitude > (~std::uint64_t{0} - 15) / wide) {
      result.overflow = true;
    } else {
      result.magnitude = result.magnitude * wide + static_cast<unsigned>(digit);
    }
  }
  return result;
}

}  // namespace

std::int32_t parse_signed(std::string_view text, int base) {
  const Scanned number = scan(text, base);
  if (!number.has_digits) throw std::invalid_argument("invalid stoi argument");
  const std::uint64_t limit = number.negative ? 0x80000000u : 0x7FFFFFFFu;
  if (number.overflow || number.magnitude > limit) {
    throw std::out_of_range("stoi argument out of range");
  }
  const auto value = static_cast<std::int64_t>(number.magnitude);
  return static_cast<std::int32_t>(number.negative ? -value : value);
}

std::uint32_t parse_unsigned(std::string_view text, int base) {
  const Scanned number = scan(text, base);
  if (!number.has_digits) throw std::invalid_argument("invalid stoul argument");
  if (number.overflow || number.magnitude > kMax32) {
    throw std::out_of_range("stoul argument out of range");
  }
  const auto value = static_cast<std::uint32_t>(number.magnitude);
  return number.negative ? 0 - value : value;
}

namespace {

std::uint32_t clamped_unsigned(const Scanned& number) {
  if (number.overflow || number.magnitude > kMax32) return kMax32;
  const auto value = static_cast<std::uint32_t>(number.magnitude);
  return number.negative ? 0 - value : value;
}

}  // namespace

std::uint32_t hex_or_zero(std::string_view text) {
  return clamped_unsigned(scan(text, 16));
}

std::uint32_t any_base_or_zero(std::string_view text) {
  return clamped_unsigned(scan(text, 0));
}

std::uint32_t decimal_or_zero(std::string_view text) {
  const Scanned number = scan(text, 10);
  constexpr std::uint64_t kMax = std::numeric_limits<std::int64_t>::max();
  const std::uint64_t limit = number.negative ? kMax + 1 : kMax;
  const std::uint64_t value =
      number.overflow || number.magnitude > limit ? limit : number.magnitude;
  return static_cast<std::uint32_t>(number.negative ? 0 - value : value);
}

}  // namespace tova_fw_builder
