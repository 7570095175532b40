// crypto/zels_hash.h
// SHA-256 and SHA-384 (FIPS 180-4) as plain functions over contexts that the
// caller allocates as bytes, of the size that the size query reports and of
// any alignment. A context holds no pointer; freeing its buffer ends it.
#pragma once

#include <cstdint>

#include "crypto/zels_status.h"

namespace tova_fw_builder {

// Bytes to allocate for a context: 119 and 223.
// Null `size`: zelStsNullPtrErr.
ZelStatus zelsSHA256GetSize(std::int32_t* size);
ZelStatus zelsSHA384GetSize(std::int32_t* size);

// Starts an empty message.
// Null `context`: zelStsNullPtrErr.
ZelStatus zelsSHA256Init(std::uint8_t* context);
ZelStatus zelsSHA384Init(std::uint8_t* context);

// Takes the next `length` bytes of the message.
// Null `context`: zelStsNullPtrErr. Not a context of this hash:
// zelStsContextMatchErr. `length` below 0: zelStsLengthErr, which
// ShaHash::taken_at_once foretells for a message in pieces. `length` 0:
// success, whatever `data` is. Null `data`: zelStsNullPtrErr.
ZelStatus zelsSHA256Update(const std::uint8_t* data, std::int32_t length,
                           std::uint8_t* context);
ZelStatus zelsSHA384Update(const std::uint8_t* data, std::int32_t length,
                           std::uint8_t* context);

// Writes the digest, 32 or 48 bytes in the order of the standard, and starts
// an empty message.
// Null `context`: zelStsNullPtrErr. Not a context of this hash:
// zelStsContextMatchErr. Null `digest`: zelStsNullPtrErr.
ZelStatus zelsSHA256Final(std::uint8_t* digest, std::uint8_t* context);
ZelStatus zelsSHA384Final(std::uint8_t* digest, std::uint8_t* context);

}  // namespace tova_fw_builder
