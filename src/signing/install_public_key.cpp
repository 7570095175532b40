// Puts the public part of a key into a manifest.
#include "signing/install_public_key.h"

#include "signing/keys/public_key_hash.h"

namespace tova_fw_builder {

void install_public_key(ImageManifest& manifest, const KeyMaterial& key) {
  manifest.set_exponent(key.pub_exponent.data());
  manifest.set_modulus(key.pub_modulus.data());
  public_key_hash(key);
}

}  // namespace tova_fw_builder
