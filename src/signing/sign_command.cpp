// The command `sign`. The library calls its private operation "decrypt".
#include <fstream>
#include <stdexcept>

#include "driver/ground/byte_dump.h"
#include "driver/ground/files.h"
#include "driver/ground/log.h"
#include "signing/commands.h"
#include "signing/keys/key_file.h"
#include "signing/keys/public_key_hash.h"
#include "signing/signature_padding.h"

namespace tova_fw_builder {

namespace {

void install_public_key(ImageManifest& manifest, const KeyMaterial& key) {
  // The public part, which nothing has compared with the one that signed:
  // `verify` is the check.
  manifest.set_exponent(key.pub_exponent.data());
  manifest.set_modulus(key.pub_modulus.data());
  public_key_hash(key);
}

}  // namespace

void sign_command(const std::string& type, const std::string& key_file,
                  const std::string& manifest_file,
                  const std::string& signed_file) {
  const bool debug = type == "debug";
  if (!debug && type != "release") {
    throw std::runtime_error("Invalid sign type");
  }
  const auto manifest = read_manifest(manifest_file);
  const auto key = load_key_file(key_file);
  // "release" keeps a mark that the manifest brings: signing never clears it.
  if (debug) {
    log_info("Debug manifest");
    manifest->set_debug();  // ahead of the hash, which covers the mark
  }
  sign_manifest(*manifest, *key);

  log_info("Writing signed manifest to: ", signed_file);
  std::ofstream out = open_output(signed_file);
  manifest->write_raw(out);
}

void sign_manifest(ImageManifest& manifest, const KeyMaterial& key) {
  log_info("Signing manifest");
  // Ahead of the hash, so that a public key file is what the log complains of.
  const RsaPrivateKey private_key(key.priv_modulus.data(), key.priv_d.data());
  const RsaBlock sig_to_sign = block_to_sign(manifest);
  log_info(ByteDump{sig_to_sign.data(), kDigestBytes, "Manifest Hash"});
  log_detail(ByteDump{sig_to_sign.data(), sig_to_sign.size(), "sig_to_sign"});
  attach_signature(manifest, private_key.decrypt(sig_to_sign.data()), key);
}

void attach_signature(ImageManifest& manifest, const RsaBlock& signature,
                      const KeyMaterial& key) {
  // A manifest without room for a signature takes none, yet the run goes on and
  // logs every step.
  manifest.set_signature(signature.data());
  log_detail(ByteDump{manifest.signature(), signature.size(), "signature"});
  install_public_key(manifest, key);
}

}  // namespace tova_fw_builder
