// signing/signature_padding.h
// What a signature encloses: a fixed frame around the digest.
#pragma once

#include "crypto/rsa_key.h"
#include "image/image.h"

namespace tova_fw_builder {

inline constexpr std::size_t kDigestBytes = 32;

// The encoded message of PKCS#1 v1.5 for SHA-256 and a modulus of 2048 bits,
// least significant byte first, with zeros in the digest's place:
//   0 to 31     the digest, last byte first
//   32 to 50    the DER prefix of the digest's algorithm, last byte first
//   51          00
//   52 to 253   ff
//   254, 255    01 00
extern const RsaBlock signature_template;

// The template with the digest of the manifest's signed parts, which stays zero
// for a manifest without. Throws what compute_hash throws.
RsaBlock block_to_sign(ImageManifest& manifest);

}  // namespace tova_fw_builder
