// outside_keys/any_key.h
// Keys in whatever form they come. All throw std::runtime_error with a reason
// that doesn't name the file.
#pragma once

#include <memory>
#include <string>

#include "crypto/secret_buffer.h"
#include "signing/keys/key_material.h"
#include "signing/keys/public_key_hash.h"

namespace tova_fw_builder {

// The longest file that is taken for a key or a passphrase.
inline constexpr std::size_t kLongestKeyFile = 64 * 1024;

// A whole file, in memory that is wiped. Throws as read_head does, or "is too
// long" for one of more than kLongestKeyFile bytes.
SecretBuffer read_secret_file(const std::string& path);

// The first line of a file, as OpenSSL takes passphrases from one.
SecretBuffer read_passphrase_file(const std::string& path);

// Reads a key file, or what read_outside_key takes, with its meaning of
// `passphrase`. Nothing is logged.
std::unique_ptr<KeyMaterial> load_any_key(
    const std::string& path, const SecretBuffer* passphrase = nullptr);

// The hash of the key that a user trusts: 64 hexadecimal digits are the hash
// itself, anything else is the path of a key in any form. Public and private
// keys are taken alike.
PublicKeyHash trusted_key_hash(const std::string& text);

}  // namespace tova_fw_builder
