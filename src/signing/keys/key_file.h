// signing/keys/key_file.h
// RSA-2048 key files, read and written; docs/file-formats.md has their two
// forms.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "crypto/secret_buffer.h"
#include "signing/keys/key_material.h"

namespace tova_fw_builder {

// Reads a key file of either form. No number is checked; private ones, too, are
// logged at level 3. Throws std::runtime_error
//   "Failed to open file: " and the path;
//   "Key type not recognized :\r\n" and the file's first 100 bytes up to the
//     first zero byte, if these hold the beginning of no known form;
//   what key_of_form throws, always for a file below 100 bytes.
std::unique_ptr<KeyMaterial> load_key_file(const std::string& path);

// The key of a key file's bytes, or null if they don't begin like one. Throws
// as key_of_form does.
std::unique_ptr<KeyMaterial> key_of_text(std::string_view file);

// The bytes of the key file for `key`, which is only read.
SecretBuffer text_of_key(KeyMaterial& key, bool public_only);

// Whether the key has more than its public part.
bool has_private_part(const KeyMaterial& key);

}  // namespace tova_fw_builder
