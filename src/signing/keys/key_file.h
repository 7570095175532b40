// signing/keys/key_file.h
// RSA-2048 key files: a canonical S-expression with binary atoms, in a public
// form and in one with the private key behind the public one.
#pragma once

#include <memory>
#include <string>

#include "signing/keys/key_material.h"

namespace tova_fw_builder {

// Reads a key file of either form and ignores what stands behind the key; no
// number is checked. Logs each field at level 3, private ones included. Throws
// std::runtime_error
//   "Failed to open file: " and the path;
//   "Key type not recognized :\r\n" and the file's first 100 bytes up to the
//     first zero byte, if these hold the beginning of no known form;
//   "Expected std::string not found" where the file departs from its form or
//     ends too early. A file below 100 bytes always ends so.
std::unique_ptr<KeyMaterial> load_key_file(const std::string& path);

}  // namespace tova_fw_builder
