// Modulus and exponents alone are tried, since signing takes no more; whether
// the primes belong to them is told by numbers_hold.
#include "outside_keys/key_halves.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>

#include "signing/keys/rsa_key.h"

namespace tova_fw_builder {

bool has_private_part(const KeyMaterial& key) {
  const auto is_set = [](std::uint8_t byte) { return byte != 0; };
  return std::ranges::any_of(key.priv_modulus, is_set) ||
         std::ranges::any_of(key.priv_d, is_set);
}

bool halves_belong_together(const KeyMaterial& key) {
  if (key.pub_modulus != key.priv_modulus ||
      key.pub_exponent != key.priv_exponent) {
    return false;
  }
  RsaBlock number;
  number.fill(0xa5);
  number.back() = 0;  // below any full modulus
  try {
    const RsaPrivateKey signer(key.priv_modulus.data(), key.priv_d.data());
    const RsaPublicKey reader(key.pub_modulus.data(), key.pub_exponent.data());
    return reader.encrypt(signer.decrypt(number.data()).data()) == number;
  } catch (const std::runtime_error&) {
    return false;
  }
}

}  // namespace tova_fw_builder
