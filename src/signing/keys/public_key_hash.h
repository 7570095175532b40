// signing/keys/public_key_hash.h
// The hash that stands for a public key in key stores and logs.
#pragma once

#include <array>
#include <cstdint>
#include <ostream>

#include "signing/keys/key_file.h"

namespace tova_fw_builder {

using PublicKeyHash = std::array<std::uint8_t, 32>;

// SHA-256 over `pub_modulus` and `pub_exponent`, as they stand in memory.
PublicKeyHash digest_public_key(const KeyMaterial& key);

// Writes the line "Public key hash: " and a C array labelled "pub_key_hash".
void print_public_key_hash(std::ostream& out, const PublicKeyHash& hash);

// Logs the key's hash at level 2 in that form.
void public_key_hash(const KeyMaterial& key);

// Whether this is the hash of the key in examples/, which everyone has.
bool is_sample_key(const PublicKeyHash& hash);

}  // namespace tova_fw_builder
