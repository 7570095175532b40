// signing/hash_key_command.h
#pragma once

#include <string>

namespace tova_fw_builder {

// Logs the public key hash of a key file, at level 2. `kind` must be "pub" or
// "pair" and has no further effect: the form is told by the file itself.
//
// Throws std::runtime_error "Invalid key file type specified" before the file
// is touched, or what load_key_file throws.
void hash_key_command(const std::string& kind, const std::string& key_file);

}  // namespace tova_fw_builder
