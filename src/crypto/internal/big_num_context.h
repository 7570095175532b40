// crypto/internal/big_num_context.h
// How a big number stands inside its caller's buffer. For the library's
// sources alone.
#pragma once

#include <cstdint>

#include "crypto/internal/digits.h"
#include "crypto/internal/zels_context.h"

namespace tova_fw_builder {

inline constexpr ContextTag kBigNumTag = {'N', 'G', 'I', 'B'};

// The two arrays follow in the same buffer.
struct BigNum {
  ContextTag tag;
  std::uint32_t sign;
  std::uint32_t size;  // digits of the value; 1 for zero
  std::uint32_t room;  // the arrays are one digit longer
  Digit* digits;
  Digit* work;
};

inline bool is_zero(const BigNum& number) {
  return number.size == 1 && number.digits[0] == 0;
}

inline std::int32_t bit_size(const BigNum& number) {
  return bit_size(number.digits, number.size);
}

}  // namespace tova_fw_builder
