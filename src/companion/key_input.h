// companion/key_input.h
#pragma once

#include <memory>
#include <string>

#include "signing/keys/key_material.h"

namespace tova_fw_builder {

// Reads a key in any form, with the passphrase in `passphrase_file`, or from
// the terminal if that is empty and one is needed. What is thrown names the
// file that is at fault.
std::unique_ptr<KeyMaterial> load_key(const std::string& path,
                                      const std::string& passphrase_file);

}  // namespace tova_fw_builder
