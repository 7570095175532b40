// signing/hash_key_command.h
#pragma once

#include <string>

namespace tova_fw_builder {

// Logs the public key hash of a key file. Throws std::runtime_error "Invalid
// key file type specified" for a `kind` other than "pub" and "pair", or what
// load_key_file throws.
void hash_key_command(const std::string& kind, const std::string& key_file);

}  // namespace tova_fw_builder
