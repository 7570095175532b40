// The hash that stands for a public key. Its bytes keep the order in which the
// hash delivers them; the digest of a manifest is the one that gets reversed.
#include "signing/keys/public_key_hash.h"

#include "crypto/sha_hash.h"
#include "driver/ground/c_array.h"
#include "driver/ground/log.h"

namespace tova_fw_builder {

PublicKeyHash digest_public_key(std::span<const std::uint8_t> modulus,
                                std::span<const std::uint8_t> exponent) {
  PublicKeyHash digest{};
  Sha256Hash hash(modulus.data(), modulus.size());
  hash.update(exponent.data(), exponent.size());
  hash.final(digest.data());
  return digest;
}

PublicKeyHash digest_public_key(const KeyMaterial& key) {
  return digest_public_key(key.pub_modulus, key.pub_exponent);
}

void log_public_key_hash(int level, const char* lead,
                         const PublicKeyHash& hash) {
  log_line(level, lead, "Public key hash: \n", CArray{"pub_key_hash", hash},
           '\n');
}

void public_key_hash(const KeyMaterial& key) {
  log_public_key_hash(kLogInfo, "", digest_public_key(key));
}

}  // namespace tova_fw_builder
