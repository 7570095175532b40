// signing/verify_command.h
#pragma once

#include <string>

#include "image/image.h"

namespace tova_fw_builder {

// Throws what read_manifest and verify_manifest throw.
void verify_command(const std::string& bin_file);

// Returns if the manifest is whole and was signed with the key that it carries.
// Throws std::runtime_error "Signature padding invalid" for a wrong key or a
// damaged signature, then "Manifest hash invalid" for other contents. Throws
// ZelError with -11 under "zelsRSASetKey(N)" for a manifest without key, under
// "zelsRSAEncrypt" for a signature that isn't below the modulus.
void verify_manifest(ImageManifest& manifest);

}  // namespace tova_fw_builder
