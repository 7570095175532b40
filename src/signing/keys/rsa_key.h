// signing/keys/rsa_key.h
// RSA keys of 2048 bits, as signing and verifying use them. All numbers stand
// least significant byte first.
#pragma once

#include <array>
#include <cstdint>

#include "crypto/secret_buffer.h"

namespace tova_fw_builder {

using RsaBlock = std::array<std::uint8_t, 256>;

// Both take the numbers' bytes, of which null counts as zero. They throw
// ZelError with the operation that failed, mainly with -11: the one that sets
// the key for a number that is zero, the one that applies it for a block that
// isn't below the modulus.
class RsaPublicKey {
 public:
  // 256 and 4 bytes. Fails as "zelsRSASetKey(N)".
  RsaPublicKey(const std::uint8_t* modulus, const std::uint8_t* exponent);

  // 256 bytes to the power e. Fails as "zelsRSAEncrypt".
  RsaBlock encrypt(const std::uint8_t* block) const;

 private:
  SecretBuffer context_;
};

// The same for the private operation. Of an odd modulus, as every key has, it
// takes a time that depends on nothing of `d` but its size in bits.
class RsaPrivateKey {
 public:
  // 256 bytes each. Fails as "zelsRSASetKey(N, D)".
  RsaPrivateKey(const std::uint8_t* modulus, const std::uint8_t* d);

  // 256 bytes to the power d. Fails as "zelsRSADecrypt".
  RsaBlock decrypt(const std::uint8_t* block) const;

 private:
  SecretBuffer context_;
};

}  // namespace tova_fw_builder
