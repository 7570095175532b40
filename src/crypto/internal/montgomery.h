// crypto/internal/montgomery.h
// Multiplication modulo an odd number without division (Montgomery 1985). For
// the library's sources alone.
//
// With R a power of 2 above N, a number x is kept as x * R mod N, and the
// product of two such numbers, divided by R, is of that form again. There are
// two variants: a portable one, and one for AVX2.
#pragma once

#include <cstdint>

#include "crypto/internal/digits.h"

namespace tova_fw_builder {

inline constexpr std::int32_t kPortableLimb = 64;
inline constexpr std::int32_t kVectorLimb = 28;

// An odd modulus, prepared. The arrays belong to somebody else.
struct Montgomery {
  std::size_t digits;      // of N
  std::int32_t limb_bits;  // kPortableLimb or kVectorLimb
  std::size_t limbs;       // of a number in the form; R is 2^(all their bits)
  Digit negative_inverse;  // -1 / N modulo 2^64
  Digit* modulus;          // in limbs; behind them four zeros
  Digit* r_squared;  // R^2 mod N: multiplying by it puts a number into the form
  Digit* scratch;    // holds secrets behind a secret operand
};

// The faster of the variants that this processor has and that take an N of so
// many bits.
std::int32_t choose_limb(std::int32_t bits);

// Digits of storage that an N of up to `bits` bits needs, in either variant.
std::size_t montgomery_storage(std::int32_t bits);

// Prepares the odd N of `bits` bits, whose arrays go to `storage`.
Montgomery prepare_montgomery(const Digit* modulus, std::int32_t bits,
                              std::int32_t limb_bits, Digit* storage);

// In all that follows, time and memory access depend on N alone.

// Puts a number of n.digits digits, below N, into the form.
void enter_montgomery(const Montgomery& n, Digit* out, const Digit* number);

// Takes a number out of the form, into n.digits digits. `work` has n.limbs.
void leave_montgomery(const Montgomery& n, Digit* out, const Digit* value,
                      Digit* work);

// out = a * b / R mod N, in limbs; `out` may be a or b. The vector variant lets
// operands and results reach 2 * N.
void montgomery_multiply(const Montgomery& n, Digit* out, const Digit* a,
                         const Digit* b);

// The AVX2 variant of the multiplication, defined for x86-64.
void montgomery_multiply_avx2(const Montgomery& n, Digit* out, const Digit* a,
                              const Digit* b);

}  // namespace tova_fw_builder
