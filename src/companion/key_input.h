// companion/key_input.h
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "crypto/secret_buffer.h"
#include "signing/keys/key_material.h"

namespace tova_fw_builder {

// The passphrase in a file, its first line; nothing if the name is empty.
std::optional<SecretBuffer> passphrase_in(const std::string& file);

// Reads a key in any form, with the passphrase in `passphrase_file`, or from
// the terminal if that is empty and one is needed. What is thrown names the
// file that is at fault.
std::unique_ptr<KeyMaterial> load_key(const std::string& path,
                                      const std::string& passphrase_file);

}  // namespace tova_fw_builder
