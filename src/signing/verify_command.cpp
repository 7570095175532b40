// The command `verify`.
#include <algorithm>
#include <array>
#include <stdexcept>

#include "driver/ground/byte_dump.h"
#include "driver/ground/log.h"
#include "signing/commands.h"
#include "signing/keys/public_key_hash.h"
#include "signing/signature_padding.h"

namespace tova_fw_builder {

namespace {

constexpr std::size_t kModulusBytes = 256;
constexpr std::size_t kExponentBytes = 4;

void log_public_key(ImageManifest& manifest) {
  log_detail(ByteDump{manifest.modulus(), kModulusBytes, "pubKey.modulus"});
  log_detail(ByteDump{manifest.exponent(), kExponentBytes, "pubKey.exponent"});
  // A manifest without a key has null for both.
  const bool has_key = manifest.modulus() != nullptr;
  const PublicKeyHash digest =
      digest_public_key({manifest.modulus(), has_key ? kModulusBytes : 0},
                        {manifest.exponent(), has_key ? kExponentBytes : 0});
  log_public_key_hash(kLogDetail, "\n", digest);
}

RsaBlock decode_signature(ImageManifest& manifest) {
  // Ahead of the key, which refuses a manifest without one.
  log_public_key(manifest);
  const RsaPublicKey key(manifest.modulus(), manifest.exponent());
  log_detail(ByteDump{manifest.signature(), kModulusBytes, "signature"});
  const RsaBlock decoded = key.encrypt(manifest.signature());
  log_detail(ByteDump{decoded.data(), decoded.size(), "sig_encrypted"});
  return decoded;
}

}  // namespace

void verify_command(const std::string& bin_file) {
  verify_manifest(*read_manifest(bin_file));
}

void verify_manifest(ImageManifest& manifest) {
  // Nothing here says that the key is trusted: its hash is logged for that.
  log_info("Verifying manifest...");
  const RsaBlock decoded = decode_signature(manifest);
  // The frame first: it tells a wrong key or a damaged signature from contents
  // that were changed.
  if (!has_signature_padding(decoded)) {
    throw std::runtime_error("Signature padding invalid");
  }
  log_info("Signature padding OK");

  std::array<std::uint8_t, kDigestBytes> hash{};
  manifest.compute_hash(hash.data());
  log_info(ByteDump{hash.data(), hash.size(), "Local Manifest Hash"});
  if (!std::equal(hash.begin(), hash.end(), decoded.begin())) {
    throw std::runtime_error("Manifest hash invalid");
  }
  log_info("Manifest hash OK");
}

}  // namespace tova_fw_builder
