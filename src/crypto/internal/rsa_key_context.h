// crypto/internal/rsa_key_context.h
// How an RSA key stands inside its caller's buffer. For the library's sources
// and its test of constant time.
#pragma once

#include <cstdint>

#include "crypto/internal/montgomery.h"
#include "crypto/internal/zels_context.h"

namespace tova_fw_builder {

inline constexpr ContextTag kPublicKeyTag = {'0', 'A', 'S', 'R'};
inline constexpr ContextTag kPrivateKeyTag = {'1', 'A', 'S', 'R'};
// A private key with its prime factors. Nothing makes one, but the private
// operation knows it: N and d stand in it all the same, and serve.
inline constexpr ContextTag kPrivateCrtKeyTag = {'2', 'A', 'S', 'R'};

// The arrays follow in the same buffer.
struct RsaKey {
  ContextTag tag;
  std::int32_t modulus_bound;  // bits
  std::int32_t exponent_bound;
  std::int32_t modulus_bits;  // 0 until a key is set
  std::int32_t exponent_bits;
  Digit* exponent;  // one zero digit longer than the bound
  Digit* modulus;
  Digit* engine_storage;
  Montgomery engine;  // for an odd modulus
};

}  // namespace tova_fw_builder
