// outside_keys/any_key.h
// Keys in whatever form they come. All throw std::runtime_error with a reason
// that doesn't name the file.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "crypto/secret_buffer.h"
#include "signing/keys/key_material.h"

namespace tova_fw_builder {

// The longest file that is taken for a key or a passphrase.
inline constexpr std::size_t kLongestKeyFile = 64 * 1024;

// A whole file, in memory that is wiped. Throws as read_head does, or "is too
// long" for one of more than kLongestKeyFile bytes.
SecretBuffer read_secret_file(const std::string& path);

// Reads a key file, or what read_outside_key takes, with its meaning of
// `passphrase`. Nothing is logged.
std::unique_ptr<KeyMaterial> load_any_key(
    const std::string& path, const SecretBuffer* passphrase = nullptr);

}  // namespace tova_fw_builder
