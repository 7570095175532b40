// driver/numbers.h
// Number conversions of the definition files and command lines. They are the
// tool's own, since the standard library's texts and ranges differ between
// platforms.
#pragma once

#include <cstdint>
#include <string_view>

namespace tova_fw_builder {

// Both read optional white space, an optional sign, for base 16 an optional
// "0x" or "0X", and the digits of `base` (2 to 16); what follows is ignored.
//
// signed: range of 32 bits. Throws std::invalid_argument "invalid stoi
//   argument" if there is no digit, std::out_of_range "stoi argument out of
//   range" beyond the range.
// unsigned: 0 to FFFFFFFF, where a minus sign negates modulo 2^32; the texts
//   have "stoul" in place of "stoi".
std::int32_t parse_signed(std::string_view text, int base);
std::uint32_t parse_unsigned(std::string_view text, int base);

// The forgiving conversions: nothing is ever reported.
//
// hex: as a standard stream extracts an unsigned 32-bit number in base 16. No
//   number gives 0, a number that is too large FFFFFFFF, a minus sign negates.
// decimal: a signed 64-bit conversion (clamped to its range; no number gives
//   0) cut to its low 32 bits.
// automatic base: "0x" means 16, a leading "0" means 8, else 10; beyond
//   32 bits FFFFFFFF, a minus sign negates, no number gives 0.
std::uint32_t hex_or_zero(std::string_view text);
std::uint32_t decimal_or_zero(std::string_view text);
std::uint32_t any_base_or_zero(std::string_view text);

}  // namespace tova_fw_builder
