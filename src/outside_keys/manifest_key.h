// outside_keys/manifest_key.h
// Which keys manifests take.
#pragma once

#include <cstdint>

#include "signing/keys/key_material.h"

namespace tova_fw_builder {

inline constexpr int kManifestKeyBits = 2048;

// Refuses a key with which no loader could verify a manifest safely: its
// modulus is odd and has 2048 bits, its exponent is 65537 or an odd number of
// one byte from 3 on, which leaves out 1, with which anyone could sign. Throws
// std::runtime_error with a reason that doesn't name the key.
void require_manifest_key(const KeyMaterial& key);

// Of the least significant byte first; 4 bytes.
std::uint32_t exponent_of(const KeyMaterial& key);
int modulus_bits(const KeyMaterial& key);

}  // namespace tova_fw_builder
