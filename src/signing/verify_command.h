// signing/verify_command.h
#pragma once

#include <string>

namespace tova_fw_builder {

// Reads a signed manifest and verifies it. Throws what read_manifest and
// verify_manifest throw.
void verify_command(const std::string& bin_file);

}  // namespace tova_fw_builder
