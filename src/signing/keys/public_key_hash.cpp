// The hash that stands for a public key. Its bytes keep the order in which the
// hash delivers them; the digest of a manifest is the one that gets reversed.
#include "signing/keys/public_key_hash.h"

#include "crypto/sha_hash.h"
#include "driver/ground/byte_dump.h"
#include "driver/ground/log.h"

namespace tova_fw_builder {

PublicKeyHash digest_public_key(const KeyMaterial& key) {
  PublicKeyHash digest{};
  Sha256Hash hash(key.pub_modulus.data(), key.pub_modulus.size());
  hash.update(key.pub_exponent.data(), key.pub_exponent.size());
  hash.final(digest.data());
  return digest;
}

void print_public_key_hash(std::ostream& out, const PublicKeyHash& hash) {
  out << "Public key hash: \n"
      << ByteDump{hash.data(), hash.size(), "pub_key_hash", true} << '\n';
}

void public_key_hash(const KeyMaterial& key) {
  const PublicKeyHash hash = digest_public_key(key);
  if (log_level() >= kLogInfo) {
    print_public_key_hash(LogLine(kLogInfo).stream(), hash);
  }
}

}  // namespace tova_fw_builder
