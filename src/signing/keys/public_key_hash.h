// signing/keys/public_key_hash.h
// The hash that stands for a public key in key stores and logs.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "signing/keys/key_material.h"

namespace tova_fw_builder {

using PublicKeyHash = std::array<std::uint8_t, 32>;

// SHA-256 over the 256 bytes of the modulus, the least significant one first,
// and the 4 of the exponent. Without a key, both empty, that of no bytes.
PublicKeyHash digest_public_key(std::span<const std::uint8_t> modulus,
                                std::span<const std::uint8_t> exponent);
PublicKeyHash digest_public_key(const KeyMaterial& key);

// Logs `lead`, the line "Public key hash: " and a C array labelled
// "pub_key_hash".
void log_public_key_hash(int level, const char* lead,
                         const PublicKeyHash& hash);

// Logs the key's hash at level 2 in that form, without a lead.
void public_key_hash(const KeyMaterial& key);

}  // namespace tova_fw_builder
