// crypto/zels_rsa.h
// The raw RSA operations, without padding, as plain functions over contexts
// that the caller allocates as bytes, of the size that the size query reports
// and of any alignment. A context must stay where it was initialised. Numbers
// are big numbers of zels_bignum.h.
#pragma once

#include <cstdint>

#include "crypto/zels_status.h"

namespace tova_fw_builder {

// Bytes to allocate for a key with a modulus and an exponent of up to so many
// bits.
// Null `size`: zelStsNullPtrErr. `modulus_bits` outside 8 to 16384:
// zelStsNotSupportedModeErr. `exponent_bits` outside 1 to `modulus_bits`:
// zelStsBadArgErr.
ZelStatus zelsRSA_GetSizePublicKey(std::int32_t modulus_bits,
                                   std::int32_t exponent_bits,
                                   std::int32_t* size);
ZelStatus zelsRSA_GetSizePrivateKey(std::int32_t modulus_bits,
                                    std::int32_t exponent_bits,
                                    std::int32_t* size);

// Prepares an empty key in `size` bytes at `context`.
// Null `context`: zelStsNullPtrErr. The two tests of bits as above. `size` too
// small: zelStsMemAllocErr.
ZelStatus zelsRSA_InitPublicKey(std::int32_t modulus_bits,
                                std::int32_t exponent_bits,
                                std::uint8_t* context, std::int32_t size);
ZelStatus zelsRSA_InitPrivateKey(std::int32_t modulus_bits,
                                 std::int32_t exponent_bits,
                                 std::uint8_t* context, std::int32_t size);

// Copies a key into its context, in place of one that was there.
// Null `context`: zelStsNullPtrErr. Not a key of this kind:
// zelStsContextMatchErr. Then for the modulus and after it for the exponent:
// null: zelStsNullPtrErr; not a big number: zelStsContextMatchErr; zero or not
// positive: zelStsOutOfRangeErr; more bits than prepared for: zelStsSizeErr.
ZelStatus zelsRSA_SetPublicKey(std::uint8_t* modulus, std::uint8_t* exponent,
                               std::uint8_t* context);
ZelStatus zelsRSA_SetPrivateKey(std::uint8_t* modulus, std::uint8_t* exponent,
                                std::uint8_t* context);

// Bytes of work buffer that an operation with this key needs.
// Null `context`: zelStsNullPtrErr. Not a key of this kind:
// zelStsContextMatchErr. No key set: zelStsIncompleteContextErr. Null `size`:
// zelStsNullPtrErr.
ZelStatus zelsRSA_GetBufferSizePublicKey(std::int32_t* size,
                                         std::uint8_t* context);
ZelStatus zelsRSA_GetBufferSizePrivateKey(std::int32_t* size,
                                          std::uint8_t* context);

// output = input ^ exponent mod N. The output is positive, its size counts no
// zero digits at the upper end, and all digits of its room above the value are
// zero. It may be the same number as the input. The work buffer of Decrypt
// holds secrets afterwards.
//
// For odd N the time that Decrypt takes, and the memory that it touches, tell
// nothing about the exponent but its size in bits.
//
// Null `context` or `work`: zelStsNullPtrErr. Not a key of this kind:
// zelStsContextMatchErr. No key set: zelStsIncompleteContextErr. Input null:
// zelStsNullPtrErr; not a big number: zelStsContextMatchErr; not positive, or
// not below N: zelStsOutOfRangeErr. Output null: zelStsNullPtrErr; not a big
// number: zelStsContextMatchErr; less room than N has 64-bit digits:
// zelStsSizeErr.
ZelStatus zelsRSAEncrypt(std::uint8_t* input, std::uint8_t* output,
                         std::uint8_t* context, std::uint8_t* work);
ZelStatus zelsRSADecrypt(std::uint8_t* input, std::uint8_t* output,
                         std::uint8_t* context, std::uint8_t* work);

}  // namespace tova_fw_builder
