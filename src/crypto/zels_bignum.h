// crypto/zels_bignum.h
// Big numbers as plain functions over contexts that the caller allocates as
// bytes, of the size that the size query reports and of any alignment. A
// context must stay where it was initialised. And the tool's own wrapper.
#pragma once

#include <cstdint>

#include "crypto/secret_buffer.h"
#include "crypto/zels_status.h"

namespace tova_fw_builder {

inline constexpr std::uint32_t kNegative = 0;
inline constexpr std::uint32_t kPositive = 1;

// Bytes to allocate for a number of up to `words` 32-bit words.
// Null `size`: zelStsNullPtrErr. `words` outside 1 to 512: zelStsLengthErr.
ZelStatus zelsBigNumGetSize(std::int32_t words, std::int32_t* size);

// Makes a zero with room for `words` 32-bit words, rounded up to whole 64-bit
// digits.
// `words` outside 1 to 512: zelStsLengthErr. Null `context`: zelStsNullPtrErr.
ZelStatus zelsBigNumInit(std::int32_t words, std::uint8_t* context);

// Loads a value, least significant word first. Zero words at the upper end
// don't count. Zero is positive, whatever `sign` is.
// Null `data` or `context`: zelStsNullPtrErr. Not a big number:
// zelStsContextMatchErr. `words` below 1: zelStsLengthErr. The value is wider
// than the room: zelStsOutOfRangeErr.
ZelStatus zelsSet_BN(std::uint32_t sign, std::int32_t words,
                     const std::uint32_t* data, std::uint8_t* context);

// Reports the sign, the size in bits (1 for zero), and the number's own digits,
// least significant first, all its room long. Each of the three may be null.
// Null `context`: zelStsNullPtrErr. Not a big number: zelStsContextMatchErr.
ZelStatus zelsRef_BN(std::uint32_t* sign, std::int32_t* bit_size,
                     const std::uint64_t** digits, std::uint8_t* context);

// A big number with room for `size_in_bytes` bytes, rounded down to whole
// 32-bit words and loaded from `data`, of any alignment; zero for null. Throws
// ZelError under "zelsBigNumGetSize" for no word or more than 512.
SecretBuffer MakeBigNum(std::int32_t size_in_bytes, const std::uint8_t* data);

}  // namespace tova_fw_builder
