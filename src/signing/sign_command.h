// signing/sign_command.h
// The command `sign`, and its steps for signatures that are made elsewhere.
#pragma once

#include <string>

#include "crypto/rsa_key.h"
#include "image/image.h"
#include "signing/keys/key_file.h"

namespace tova_fw_builder {

// Writes the manifest in `manifest_file`, signed with the pair in `key_file`,
// to `signed_file`, which is touched only when the signature stands. `type`
// "debug" marks it as a debug signature ahead of the hash; "release" leaves
// the mark as the manifest has it. A failure to open or write `signed_file` is
// not reported.
//
// Throws std::runtime_error "Invalid sign type" before any file is touched, or
// what read_manifest, load_key_file and sign_manifest throw.
void sign_command(const std::string& type, const std::string& key_file,
                  const std::string& manifest_file,
                  const std::string& signed_file);

// Signs block_to_sign with the private part of `key`, by RSASSA-PKCS1-v1_5, and
// attaches the signature. The two parts of the key are not compared, and the
// signature isn't checked. A manifest without room for one stays as it is, yet
// all steps are run and logged.
//
// Throws ZelError, mainly
//   "zelsRSASetKey(N, D)" with -11 for a key without a private part;
//   "zelsRSADecrypt" with -11 for a modulus that is too small.
void sign_manifest(ImageManifest& manifest, const KeyMaterial& key);

// Puts a signature, least significant byte first, and the public part of `key`
// into the manifest, and logs the key's hash at level 2.
void attach_signature(ImageManifest& manifest, const RsaBlock& signature,
                      const KeyMaterial& key);

}  // namespace tova_fw_builder
