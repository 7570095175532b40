// signing/keys/key_file.h
// RSA-2048 key files; docs/file-formats.md has their two formats.
#pragma once

#include <memory>
#include <string>

#include "signing/keys/key_material.h"

namespace tova_fw_builder {

// Reads a key file of either format. No number is checked; private ones, too,
// are logged at level 3. Throws std::runtime_error
//   "Failed to open file: " and the path;
//   what recognize_format throws for the file's first 100 bytes;
//   what key_of_format throws, always for a recognised file below 100 bytes.
std::unique_ptr<KeyMaterial> load_key_file(const std::string& path);

}  // namespace tova_fw_builder
