// signing/commands.h
// The commands of this room, each in a source of its own, and the steps of
// `sign` and `verify` for signatures that are made elsewhere.
#pragma once

#include <string>

#include "image/image.h"
#include "signing/keys/key_material.h"
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
// signature, which isn't checked. Throws what compute_hash throws, and
// ZelError, mainly with -11
//   "zelsRSASetKey(N, D)" for a key without a private part;
//   "zelsRSADecrypt" for a modulus that is too small.
void sign_manifest(ImageManifest& manifest, const KeyMaterial& key);

// Puts signature and public key into the manifest and logs the key's hash.
void attach_signature(ImageManifest& manifest, const RsaBlock& signature,
                      const KeyMaterial& key);

// Throws what read_manifest and verify_manifest throw.
void verify_command(const std::string& bin_file);

// Returns if the manifest is whole and was signed with the key that it carries.
// Throws std::runtime_error "Signature padding invalid" for a wrong key or a
// damaged signature, then "Manifest hash invalid" for other contents. Throws
// ZelError with -11 under "zelsRSASetKey(N)" for a manifest without key, under
// "zelsRSAEncrypt" for a signature that isn't below the modulus, and behind the
// padding what compute_hash throws.
void verify_manifest(ImageManifest& manifest);

// Writes a file as a C array. An output that can't be written is not reported.
// Throws std::runtime_error "Failed to open file: " and the path before the
// output is touched, or "Cannot tell the length of file: " and the path.
void write_c_command(const std::string& bin_file,
                     const std::string& out_c_file);

// Logs the public key hash of a key file. Throws std::runtime_error "Invalid
// key file type specified" for a `kind` other than "pub" and "pair", or what
// load_key_file throws.
void hash_key_command(const std::string& kind, const std::string& key_file);

}  // namespace tova_fw_builder
