// signing/sign_command.h
// The command `sign`, and its steps for signatures that are made elsewhere.
#pragma once

#include <string>

#include "image/image.h"
#include "signing/keys/key_file.h"
#include "signing/keys/rsa_key.h"

namespace tova_fw_builder {

// Writes the manifest in `manifest_file`, signed with the pair in `key_file`,
// to `signed_file`, which is touched only when the signature stands; that it
// can't be written is not reported. `type` is "debug" or "release".
//
// Throws std::runtime_error "Invalid sign type" before any file is touched, or
// what read_manifest, load_key_file and sign_manifest throw.
void sign_command(const std::string& type, const std::string& key_file,
                  const std::string& manifest_file,
                  const std::string& signed_file);

// Signs block_to_sign with the private part of `key` and attaches the
// signature, which isn't checked. Throws ZelError, mainly with -11
//   "zelsRSASetKey(N, D)" for a key without a private part;
//   "zelsRSADecrypt" for a modulus that is too small.
void sign_manifest(ImageManifest& manifest, const KeyMaterial& key);

// Puts signature and public key into the manifest and logs the key's hash.
void attach_signature(ImageManifest& manifest, const RsaBlock& signature,
                      const KeyMaterial& key);

}  // namespace tova_fw_builder
