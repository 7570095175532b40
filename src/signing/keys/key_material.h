// signing/keys/key_material.h
#pragma once

#include <array>
#include <cstdint>

namespace tova_fw_builder {

// One key, wiped when it ends. All numbers stand least significant byte first,
// except that the exponents keep the order of the file: right for 65537 and for
// every exponent of one byte, and byte-reversed for other exponents of three,
// which is what fielded images were signed with. A public key file leaves all
// `priv_` fields zero.
struct KeyMaterial {
  KeyMaterial() = default;
  KeyMaterial(const KeyMaterial&) = delete;
  KeyMaterial& operator=(const KeyMaterial&) = delete;
  ~KeyMaterial();

  std::array<std::uint8_t, 4> pub_exponent{};  // 1 or 3 bytes, then zeros
  std::array<std::uint8_t, 256> pub_modulus{};
  std::array<std::uint8_t, 4> priv_exponent{};
  std::array<std::uint8_t, 256> priv_modulus{};
  std::array<std::uint8_t, 256> priv_d{};
  // Signing does without the primes p and q, and what stands for quick powers:
  // d mod p-1, d mod q-1, and q to the power -1 mod p.
  std::array<std::uint8_t, 128> priv_p{};
  std::array<std::uint8_t, 128> priv_q{};
  std::array<std::uint8_t, 128> priv_a{};
  std::array<std::uint8_t, 128> priv_b{};
  std::array<std::uint8_t, 128> priv_c{};
};

}  // namespace tova_fw_builder
