// signing/sign_manifest.h
// Signing of a manifest in memory: RSASSA-PKCS1-v1_5 with SHA-256 and 2048
// bits.
#pragma once

#include "image/image.h"
#include "signing/keys/key_file.h"

namespace tova_fw_builder {

// Signs the manifest's hash with the private part of `key`, and puts signature
// and public part into the manifest. The two parts are not compared, and the
// signature isn't checked. A manifest without these areas stays as it is, yet
// all steps are run and logged.
//
// Throws ZelError, mainly
//   "zelsRSASetKey(N, D)" with -11 for a key without a private part;
//   "zelsRSADecrypt" with -11 for a modulus that is too small.
void sign_manifest(ImageManifest& manifest, const KeyMaterial& key);

}  // namespace tova_fw_builder
