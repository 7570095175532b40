// Whether a loader can use the key, told ahead of any signing with it.
#include "outside_keys/manifest_key.h"

#include <bit>
#include <stdexcept>
#include <string>

namespace tova_fw_builder {

std::uint32_t exponent_of(const KeyMaterial& key) {
  std::uint32_t exponent = 0;
  for (std::size_t i = key.pub_exponent.size(); i-- > 0;) {
    exponent = exponent << 8 | key.pub_exponent[i];
  }
  return exponent;
}

int modulus_bits(const KeyMaterial& key) {
  std::size_t size = key.pub_modulus.size();
  while (size > 0 && key.pub_modulus[size - 1] == 0) --size;
  if (size == 0) return 0;
  const int top = std::bit_width(key.pub_modulus[size - 1]);
  return static_cast<int>(8 * (size - 1)) + top;
}

void require_manifest_key(const KeyMaterial& key) {
  const int bits = modulus_bits(key);
  if (bits != kManifestKeyBits) {
    throw std::runtime_error("its modulus has " + std::to_string(bits) +
                             " bits; manifests take 2048");
  }
  if (key.pub_modulus[0] % 2 == 0) {
    throw std::runtime_error("its modulus is even, so this is no RSA key");
  }
  const std::uint32_t exponent = exponent_of(key);
  if (exponent == 65537) return;
  if (exponent > 255 || exponent < 3 || exponent % 2 == 0) {
    throw std::runtime_error(
        "its exponent is " + std::to_string(exponent) +
        "; manifests take 65537, or an odd one of one byte from 3 on");
  }
}

}  // namespace tova_fw_builder
