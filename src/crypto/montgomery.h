// crypto/montgomery.h
// Multiplication modulo an odd number without division (Montgomery 1985). For
// the library's sources alone.
//
// With R a power of 2 above N, a number x is kept as x * R mod N, and the
// product of two such numbers, divided by R, is of that form again. The
// division by R is exact once a multiple of N has cleared the low half of the
// product, and that multiple is found digit by digit.
#pragma once

#include "crypto/digits.h"

namespace tova_fw_builder {

// An odd modulus, prepared. The arrays belong to somebody else.
struct Montgomery {
  std::size_t digits;      // of N; R is 2^(64 * digits)
  Digit negative_inverse;  // -1 / N modulo 2^64
  Digit* modulus;
  Digit* r_squared;  // R^2 mod N: multiplying by it puts a number into the form
  Digit* scratch;    // 2 * digits; holds secrets behind a secret operand
};

// Fills in negative_inverse and the digits at `r_squared`, from the other
// fields. The modulus's top digit isn't zero.
void prepare_montgomery(Montgomery& n);

// out = a * b / R mod N, for a and b below N; `out` may be one of them. Time
// and memory access depend on the number of digits alone.
void montgomery_multiply(const Montgomery& n, Digit* out, const Digit* a,
                         const Digit* b);

}  // namespace tova_fw_builder
