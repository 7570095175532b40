// crypto/internal/digits.h
// Numbers as arrays of 64-bit digits, least significant first. For the
// library's sources alone.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

namespace tova_fw_builder {

using Digit = std::uint64_t;
__extension__ typedef unsigned __int128 WideDigit;

constexpr std::size_t digits_for_bits(std::int32_t bits) {
  return (static_cast<std::size_t>(bits) + 63) / 64;
}

// The size in bits of a number whose top digit isn't zero; 1 for zero.
inline std::int32_t bit_size(const Digit* digits, std::size_t count) {
  const Digit top = digits[count - 1];
  if (top == 0) return 1;
  return static_cast<std::int32_t>(64 * count) - std::countl_zero(top);
}

// Whether a < b. Branches on both, so it is not for secrets.
inline bool is_below(const Digit* a, const Digit* b, std::size_t count) {
  std::size_t i = count - 1;
  while (i > 0 && a[i] == b[i]) --i;
  return a[i] < b[i];
}

// All ones for true. A compiler that sees that only two values come out may
// make a branch of what is done with them, as clang 16 does: what has been
// volatile may be any value to it.
inline Digit mask_if_zero(Digit value) {
  const volatile Digit mask = ((value | (0 - value)) >> 63) - 1;
  return mask;
}

}  // namespace tova_fw_builder
