// signing/signature_padding.h
// What a signature encloses. All of it stands least significant byte first.
#pragma once

#include <cstddef>

#include "image/image.h"
#include "signing/keys/rsa_key.h"

namespace tova_fw_builder {

inline constexpr std::size_t kDigestBytes = 32;
// The digest and the DER prefix that names its algorithm.
inline constexpr std::size_t kDigestInfoBytes = 19 + kDigestBytes;

// The encoded message of PKCS#1 v1.5 for SHA-256 and a modulus of 2048 bits,
// with zeros in the digest's place, which comes first.
extern const RsaBlock signature_template;

// Whether the block that a signature encloses is the template, but for the
// digest.
bool has_signature_padding(const RsaBlock& block);

// The template with the digest of the manifest's signed parts, zero if it has
// none. Throws what compute_hash throws.
RsaBlock block_to_sign(ImageManifest& manifest);

}  // namespace tova_fw_builder
