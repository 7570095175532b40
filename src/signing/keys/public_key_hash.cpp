// The hash that stands for a public key. Its bytes keep the order in which the
// hash delivers them; the digest of a manifest is the one that gets reversed.
#include "signing/keys/public_key_hash.h"

#include "crypto/sha_hash.h"
#include "driver/ground/c_array.h"
#include "driver/ground/log.h"

namespace tova_fw_builder {

PublicKeyHash digest_public_key(const KeyMaterial& key) {
  PublicKeyHash digest{};
  Sha256Hash hash(key.pub_modulus.data(), key.pub_modulus.size());
  hash.update(key.pub_exponent.data(), key.pub_exponent.size());
  hash.final(digest.data());
  return digest;
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
