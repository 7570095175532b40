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

bool is_sample_key(const PublicKeyHash& hash) {
  // As `hash_key` prints it for examples/audio_firmware/keys.
  constexpr PublicKeyHash kSampleKey = {
      0x96, 0x6d, 0x4e, 0x58, 0x10, 0xfc, 0x43, 0x21, 0xab, 0xba, 0x1a,
      0xb3, 0xdc, 0x59, 0x3a, 0x83, 0x82, 0x56, 0x57, 0x76, 0x61, 0xe8,
      0x90, 0xbb, 0x65, 0xf5, 0xf0, 0x7d, 0x6d, 0x67, 0x8b, 0x47};
  return hash == kSampleKey;
}

}  // namespace tova_fw_builder
