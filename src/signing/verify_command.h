// signing/verify_command.h
#pragma once

#include <string>

#include "image/image.h"

namespace tova_fw_builder {

// Reads a signed manifest and verifies it. Throws what read_manifest and
// verify_manifest throw.
void verify_command(const std::string& bin_file);

// Returns if the manifest is whole and was signed with the key that it carries
// itself; whether that key is a trusted one is for the reader of the log to
// say, who sees the key's hash at level 3.
//
// Throws std::runtime_error "Signature padding invalid" for a wrong key or a
// damaged signature, then "Manifest hash invalid" for a good signature over
// other contents. Throws ZelError
//   "zelsRSASetKey(N)" with -11 for a manifest without key, as before signing;
//   "zelsRSAEncrypt" with -11 for a signature that isn't below the modulus.
void verify_manifest(ImageManifest& manifest);

}  // namespace tova_fw_builder
