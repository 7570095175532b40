// signing/keys/key_file.h
// RSA-2048 key files: a canonical S-expression with binary atoms, in a public
// form and in one with the private key behind the public one.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

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
  // Read and logged, but never used.
  std::array<std::uint8_t, 128> priv_p{};
  std::array<std::uint8_t, 128> priv_q{};
  std::array<std::uint8_t, 128> priv_a{};
  std::array<std::uint8_t, 128> priv_b{};
  std::array<std::uint8_t, 128> priv_c{};
};

// Reads a key file of either form and ignores what stands behind the key; no
// number is checked. Logs each field at level 3, private ones included. Throws
// std::runtime_error
//   "Failed to open file: " and the path;
//   "Key type not recognized :\r\n" and the file's first 100 bytes up to the
//     first zero byte, if these hold the beginning of no known form;
//   "Expected std::string not found" where the file departs from its form or
//     ends too early. A file below 100 bytes always ends so.
std::unique_ptr<KeyMaterial> load_key_file(const std::string& path);

}  // namespace tova_fw_builder
