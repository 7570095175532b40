// driver/ground/numbers.h
// Numbers in the texts of definition files, linker output and command lines.
// The conversions are the tool's own, since the standard library's texts and
// ranges differ between platforms.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tova_fw_builder {

// The classic locale's white space: blank, \t, \n, \v, \f, \r.
constexpr bool is_white_space(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

// Value of a hexadecimal digit, -1 for any other character.
constexpr int hex_digit_value(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// What stands at the start of a text as a number, before any range is asked.
struct ScannedNumber {
  bool negative = false;
  bool prefixed = false;    // by "0x" or "0X"
  bool has_digits = false;  // behind sign and prefix
  bool overflow = false;    // of 64 bits; the magnitude is then all ones
  std::uint64_t magnitude = 0;
  std::size_t length = 0;  // characters taken, white space and sign included
};

// Scans optional white space, an optional sign, for base 16 an optional "0x"
// or "0X", and the digits of `base` (2 to 16). Base 0 means 16 behind "0x",
// 8 ahead of another "0", else 10.
ScannedNumber scan_number(std::string_view text, int base);

// In 32 bits: FFFFFFFF if it doesn't fit, else a minus sign negates.
std::uint32_t clamped_unsigned(const ScannedNumber& number);

// Both read a number as scan_number does; what follows is ignored.
//
// signed: range of 32 bits. Throws std::invalid_argument "invalid stoi
// argument" if there is no number, std::out_of_range "stoi argument out of
// range".
//
// unsigned: to FFFFFFFF; a minus sign negates modulo 2^32. "stoul" for "stoi".
std::int32_t parse_signed(std::string_view text, int base);
std::uint32_t parse_unsigned(std::string_view text, int base);

// The forgiving conversions: nothing is ever reported.
//
// hex, any_base: 0 for no number, else clamped_unsigned in base 16 or 0.
// decimal: a signed 64-bit conversion (clamped to its range; no number gives
//   0) cut to its low 32 bits.
std::uint32_t hex_or_zero(std::string_view text);
std::uint32_t decimal_or_zero(std::string_view text);
std::uint32_t any_base_or_zero(std::string_view text);

}  // namespace tova_fw_builder
