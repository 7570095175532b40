// signing/keys/key_material.h
#pragma once

#include <array>
#include <cstdint>

#include "crypto/secret_buffer.h"

namespace tova_fw_builder {

// One key, wiped when it ends. All numbers stand least significant byte first,
// except that the exponents keep the order of the file. A public key file
// leaves all `priv_` fields zero.
struct KeyMaterial {
  KeyMaterial() = default;
  KeyMaterial(const KeyMaterial&) = delete;
  KeyMaterial& operator=(const KeyMaterial&) = delete;
  ~KeyMaterial() { secure_wipe(this, sizeof(*this)); }

  std::array<std::uint8_t, 4> pub_exponent{};  // 1 or 3 bytes, then zeros
  std::array<std::uint8_t, 256> pub_modulus{};
  std::array<std::uint8_t, 4> priv_exponent{};
  std::array<std::uint8_t, 256> priv_modulus{};
  std::array<std::uint8_t, 256> priv_d{};
  // Signing does without these.
  std::array<std::uint8_t, 128> priv_p{};
  std::array<std::uint8_t, 128> priv_q{};
  std::array<std::uint8_t, 128> priv_a{};
  std::array<std::uint8_t, 128> priv_b{};
  std::array<std::uint8_t, 128> priv_c{};
};

}  // namespace tova_fw_builder
