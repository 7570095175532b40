// Verification of a manifest against the key that it carries. The frame of the
// signature is not parsed: it must be the one frame, byte for byte, which
// leaves no room for forged ones.
#include "signing/verify_manifest.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "crypto/make_big_num.h"
#include "crypto/sha_hash.h"
#include "crypto/zel_error.h"
#include "crypto/zels_bignum.h"
#include "crypto/zels_rsa.h"
#include "driver/ground/byte_dump.h"
#include "driver/ground/log.h"
#include "signing/keys/public_key_hash.h"
#include "signing/signature_padding.h"

namespace tova_fw_builder {

namespace {

constexpr std::int32_t kModulusBits = 2048;
constexpr std::int32_t kMostExponentBits = 1024;
constexpr std::int32_t kModulusBytes = 256;
constexpr std::int32_t kExponentBytes = 4;

void log_bytes(const char* label, const std::uint8_t* bytes,
               std::size_t length) {
  log_detail(ByteDump{bytes, length, label});
}

void log_public_key(ImageManifest& manifest) {
  log_bytes("pubKey.modulus", manifest.modulus(), kModulusBytes);
  log_bytes("pubKey.exponent", manifest.exponent(), kExponentBytes);
  if (log_level() < kLogDetail) return;
  // Modulus and exponent are neighbours in the manifest.
  PublicKeyHash digest{};
  Sha256Hash hash(manifest.modulus(), kModulusBytes + kExponentBytes);
  hash.final(digest.data());
  LogLine line(kLogDetail);
  line.stream() << '\n';
  print_public_key_hash(line.stream(), digest);
}

SecretBuffer make_public_key(ImageManifest& manifest) {
  std::int32_t size = 0;
  throw_unless_ok(
      zelsRSA_GetSizePublicKey(kModulusBits, kMostExponentBits, &size),
      "zelRSAGetSize");
  SecretBuffer context(static_cast<std::size_t>(size));
  throw_unless_ok(zelsRSA_InitPublicKey(kModulusBits, kMostExponentBits,
                                        context.data(), size),
                  "zelsRSAInit");
  const SecretBuffer n = MakeBigNum(kModulusBytes, manifest.modulus());
  const SecretBuffer e = MakeBigNum(kExponentBytes, manifest.exponent());
  log_public_key(manifest);
  throw_unless_ok(zelsRSA_SetPublicKey(n.data(), e.data(), context.data()),
                  "zelsRSASetKey(N)");
  return context;
}

SignatureBlock decode_signature(ImageManifest& manifest) {
  const SecretBuffer context = make_public_key(manifest);
  // The name in the log is the private key's, for both kinds of key.
  std::int32_t size = 0;
  throw_unless_ok(zelsRSA_GetBufferSizePublicKey(&size, context.data()),
                  "zelsRSA_GetBufferSizePrivateKey");
  const SecretBuffer work(static_cast<std::size_t>(size));

  const SecretBuffer s = MakeBigNum(kSignatureBytes, manifest.signature());
  log_bytes("signature", manifest.signature(), kSignatureBytes);
  const SecretBuffer r = MakeBigNum(kSignatureBytes, nullptr);
  throw_unless_ok(
      zelsRSAEncrypt(s.data(), r.data(), context.data(), work.data()),
      "zelsRSAEncrypt");
  const std::uint64_t* digits = nullptr;
  throw_unless_ok(zelsRef_BN(nullptr, nullptr, &digits, r.data()),
                  "zelsRef_BN");
  SignatureBlock decoded;
  std::copy_n(reinterpret_cast<const std::uint8_t*>(digits), decoded.size(),
              decoded.begin());
  log_bytes("sig_encrypted", decoded.data(), decoded.size());
  return decoded;
}

}  // namespace

void verify_manifest(ImageManifest& manifest) {
  log_info("Verifying manifest...");
  const SignatureBlock decoded = decode_signature(manifest);
  if (!std::equal(decoded.begin() + kDigestBytes, decoded.end(),
                  signature_template.begin() + kDigestBytes)) {
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
