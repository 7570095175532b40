// outside_keys/key_text.h
// Key files as bytes in memory.
#pragma once

#include <memory>
#include <string_view>

#include "crypto/secret_buffer.h"
#include "signing/keys/key_material.h"

namespace tova_fw_builder {

// The key of a key file's bytes, or null if they don't begin like one. Throws
// as key_of_format does.
std::unique_ptr<KeyMaterial> key_of_text(std::string_view file);

// The bytes of the key file for `key`, which is only read.
SecretBuffer text_of_key(KeyMaterial& key, bool public_only);

}  // namespace tova_fw_builder
