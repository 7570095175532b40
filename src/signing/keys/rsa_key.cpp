// RSA keys over the function library. Both kinds take the same steps with other
// functions; the names of the steps are those that the log shows.
#include "signing/keys/rsa_key.h"

#include "crypto/zel_error.h"
#include "crypto/zels_bignum.h"
#include "crypto/zels_rsa.h"

namespace tova_fw_builder {

namespace {

constexpr std::int32_t kBits = 2048;
constexpr std::int32_t kBytes = 256;

struct KeyKind {
  ZelStatus (*get_size)(std::int32_t, std::int32_t, std::int32_t*);
  ZelStatus (*init)(std::int32_t, std::int32_t, std::uint8_t*, std::int32_t);
  ZelStatus (*set)(std::uint8_t*, std::uint8_t*, std::uint8_t*);
  ZelStatus (*get_buffer_size)(std::int32_t*, std::uint8_t*);
  ZelStatus (*apply)(std::uint8_t*, std::uint8_t*, std::uint8_t*,
                     std::uint8_t*);
  std::int32_t exponent_bits;  // of the room in the key, for more than is used
  std::int32_t exponent_bytes;
  const char* set_name;
  const char* apply_name;
};

constexpr KeyKind kPublic = {
    .get_size = zelsRSA_GetSizePublicKey,
    .init = zelsRSA_InitPublicKey,
    .set = zelsRSA_SetPublicKey,
    .get_buffer_size = zelsRSA_GetBufferSizePublicKey,
    .apply = zelsRSAEncrypt,
    .exponent_bits = 1024,
    .exponent_bytes = 4,
    .set_name = "zelsRSASetKey(N)",
    .apply_name = "zelsRSAEncrypt",
};
constexpr KeyKind kPrivate = {
    .get_size = zelsRSA_GetSizePrivateKey,
    .init = zelsRSA_InitPrivateKey,
    .set = zelsRSA_SetPrivateKey,
    .get_buffer_size = zelsRSA_GetBufferSizePrivateKey,
    .apply = zelsRSADecrypt,
    .exponent_bits = kBits,
    .exponent_bytes = kBytes,
    .set_name = "zelsRSASetKey(N, D)",
    .apply_name = "zelsRSADecrypt",
};

SecretBuffer make_key(const KeyKind& kind, const std::uint8_t* modulus,
                      const std::uint8_t* exponent) {
  std::int32_t size = 0;
  throw_unless_ok(kind.get_size(kBits, kind.exponent_bits, &size),
                  // The missing s belongs to the name that log watchers know.
                  "zelRSAGetSize");
  SecretBuffer key(static_cast<std::size_t>(size));
  throw_unless_ok(kind.init(kBits, kind.exponent_bits, key.data(), size),
                  "zelsRSAInit");
  const SecretBuffer n = MakeBigNum(kBytes, modulus);
  const SecretBuffer e = MakeBigNum(kind.exponent_bytes, exponent);
  throw_unless_ok(kind.set(n.data(), e.data(), key.data()), kind.set_name);
  return key;
}

RsaBlock apply(const KeyKind& kind, const SecretBuffer& key,
               const std::uint8_t* block) {
  // The name in the log is the private key's, for both kinds of key.
  std::int32_t size = 0;
  throw_unless_ok(kind.get_buffer_size(&size, key.data()),
                  "zelsRSA_GetBufferSizePrivateKey");
  // Wiped: it keeps powers that tell of d.
  const SecretBuffer work(static_cast<std::size_t>(size));
  const SecretBuffer input = MakeBigNum(kBytes, block);
  // Full room: all bytes are taken from it, zeros at the upper end included.
  const SecretBuffer output = MakeBigNum(kBytes, nullptr);
  throw_unless_ok(
      kind.apply(input.data(), output.data(), key.data(), work.data()),
      kind.apply_name);
  const std::uint64_t* digits = nullptr;
  throw_unless_ok(zelsRef_BN(nullptr, nullptr, &digits, output.data()),
                  "zelsRef_BN");
  RsaBlock result;
  for (std::size_t i = 0; i < result.size(); ++i) {
    result[i] = static_cast<std::uint8_t>(digits[i / 8] >> i % 8 * 8);
  }
  return result;
}

}  // namespace

RsaPublicKey::RsaPublicKey(const std::uint8_t* modulus,
                           const std::uint8_t* exponent)
    : context_(make_key(kPublic, modulus, exponent)) {}

RsaBlock RsaPublicKey::encrypt(const std::uint8_t* block) const {
  return apply(kPublic, context_, block);
}

RsaPrivateKey::RsaPrivateKey(const std::uint8_t* modulus, const std::uint8_t* d)
    : context_(make_key(kPrivate, modulus, d)) {}

RsaBlock RsaPrivateKey::decrypt(const std::uint8_t* block) const {
  return apply(kPrivate, context_, block);
}

}  // namespace tova_fw_builder
