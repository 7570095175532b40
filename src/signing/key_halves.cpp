// The halves of a key, tried out on the block of a digest of zeros.
#include "signing/key_halves.h"

#include <stdexcept>

#include "crypto/rsa_key.h"
#include "signing/signature_padding.h"

namespace tova_fw_builder {

bool halves_belong_together(const KeyMaterial& key) {
  if (key.pub_modulus != key.priv_modulus ||
      key.pub_exponent != key.priv_exponent) {
    return false;
  }
  try {
    const RsaPrivateKey signer(key.priv_modulus.data(), key.priv_d.data());
    const RsaPublicKey reader(key.pub_modulus.data(), key.pub_exponent.data());
    return reader.encrypt(signer.decrypt(signature_template.data()).data()) ==
           signature_template;
  } catch (const std::runtime_error&) {
    return false;
  }
}

}  // namespace tova_fw_builder
