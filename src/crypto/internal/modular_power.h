// crypto/internal/modular_power.h
// Powers modulo N, three ways. For the library's sources alone.
#pragma once

#include <cstdint>

#include "crypto/internal/montgomery.h"

namespace tova_fw_builder {

// In all of them `base` is below N, and `base` and `out` have the digits of N.
// `exponent` has `bits` bits, the top one set. They may overlap nowhere.

// For public exponents. `work`: public_power_work() digits.
std::size_t public_power_work(const Montgomery& n);
void public_power(const Montgomery& n, Digit* out, const Digit* base,
                  const Digit* exponent, std::int32_t bits, Digit* work);

// For private exponents: time and memory access depend on nothing but `bits`
// and the size of N. `exponent` has one readable digit more.
// `work`: secret_power_work() digits; they hold secrets afterwards.
std::size_t secret_power_work(const Montgomery& n, std::int32_t bits);
void secret_power(const Montgomery& n, Digit* out, const Digit* base,
                  const Digit* exponent, std::int32_t bits, Digit* work);

// For even N, which only damaged keys have: slow, and not for secrets.
// `work`: divided_power_work() digits.
std::size_t divided_power_work(std::size_t digits);
void divided_power(const Digit* modulus, std::size_t digits, Digit* out,
                   const Digit* base, const Digit* exponent, std::int32_t bits,
                   Digit* work);

}  // namespace tova_fw_builder
