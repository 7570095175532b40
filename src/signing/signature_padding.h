// signing/signature_padding.h
// What a signature encloses: a fixed frame around the digest.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace tova_fw_builder {

inline constexpr std::size_t kSignatureBytes = 256;
inline constexpr std::size_t kDigestBytes = 32;
using SignatureBlock = std::array<std::uint8_t, kSignatureBytes>;

// The encoded message of PKCS#1 v1.5 for SHA-256 and a modulus of 2048 bits,
// least significant byte first, with zeros in the digest's place:
//   0 to 31     the digest, last byte first
//   32 to 50    the DER prefix of the digest's algorithm, last byte first
//   51          00
//   52 to 253   ff
//   254, 255    01 00
extern const SignatureBlock signature_template;

}  // namespace tova_fw_builder
