// Signing of a manifest in memory. The library calls its private operation
// "decrypt"; its names are those that the log shows when it fails.
#include "signing/sign_manifest.h"

#include "crypto/make_big_num.h"
#include "crypto/secret_buffer.h"
#include "crypto/zel_error.h"
#include "crypto/zels_bignum.h"
#include "crypto/zels_rsa.h"
#include "driver/ground/byte_dump.h"
#include "driver/ground/log.h"
#include "signing/install_public_key.h"
#include "signing/signature_padding.h"

namespace tova_fw_builder {

namespace {

constexpr std::int32_t kKeyBits = 2048;
constexpr std::int32_t kKeyBytes = 256;

SecretBuffer make_private_key(const KeyMaterial& key) {
  std::int32_t size = 0;
  throw_unless_ok(zelsRSA_GetSizePrivateKey(kKeyBits, kKeyBits, &size),
                  "zelRSAGetSize");
  SecretBuffer context(static_cast<std::size_t>(size));
  throw_unless_ok(
      zelsRSA_InitPrivateKey(kKeyBits, kKeyBits, context.data(), size),
      "zelsRSAInit");
  const SecretBuffer n = MakeBigNum(kKeyBytes, key.priv_modulus.data());
  const SecretBuffer d = MakeBigNum(kKeyBytes, key.priv_d.data());
  throw_unless_ok(zelsRSA_SetPrivateKey(n.data(), d.data(), context.data()),
                  "zelsRSASetKey(N, D)");
  return context;
}

SecretBuffer make_work_buffer(const SecretBuffer& context) {
  std::int32_t size = 0;
  throw_unless_ok(zelsRSA_GetBufferSizePrivateKey(&size, context.data()),
                  "zelsRSA_GetBufferSizePrivateKey");
  return SecretBuffer(static_cast<std::size_t>(size));
}

SignatureBlock block_to_sign(ImageManifest& manifest) {
  SignatureBlock sig_to_sign = signature_template;
  manifest.compute_hash(sig_to_sign.data());
  log_info(ByteDump{sig_to_sign.data(), kDigestBytes, "Manifest Hash"});
  log_detail(ByteDump{sig_to_sign.data(), sig_to_sign.size(), "sig_to_sign"});
  return sig_to_sign;
}

}  // namespace

void sign_manifest(ImageManifest& manifest, const KeyMaterial& key) {
  log_info("Signing manifest");
  const SecretBuffer context = make_private_key(key);
  const SecretBuffer work = make_work_buffer(context);
  const SignatureBlock sig_to_sign = block_to_sign(manifest);

  const SecretBuffer input = MakeBigNum(kKeyBytes, sig_to_sign.data());
  const SecretBuffer output = MakeBigNum(kKeyBytes, nullptr);
  throw_unless_ok(
      zelsRSADecrypt(input.data(), output.data(), context.data(), work.data()),
      "zelsRSADecrypt");
  const std::uint64_t* digits = nullptr;
  throw_unless_ok(zelsRef_BN(nullptr, nullptr, &digits, output.data()),
                  "zelsRef_BN");
  manifest.set_signature(reinterpret_cast<const std::uint8_t*>(digits));
  log_detail(ByteDump{manifest.signature(), kSignatureBytes, "signature"});
  install_public_key(manifest, key);
}

}  // namespace tova_fw_builder
