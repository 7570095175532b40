// tests/signing/manifest_sample.h
// A small manifest of generation 1.5, as a build leaves it, and a key pair for
// it.
#pragma once

#include <algorithm>
#include <string>

#include "crypto/rsa_sample.h"
#include "signing/keys/key_samples.h"

namespace tova_fw_builder {

inline std::string big_endian_text(const std::string& hex) {
  const auto bytes = little_endian(hex, hex.size() / 2);
  return {bytes.rbegin(), bytes.rend()};
}

inline std::string sample_pair_file() {
  const std::string e("\1\0\1", 3);
  const std::string n = big_endian_text(kSampleModulus);
  return pair_key_file(e, n, n, big_endian_text(kSamplePrivateExponent));
}

inline std::string sample_public_file() {
  return public_key_file(std::string("\1\0\1", 3),
                         big_endian_text(kSampleModulus));
}

// 704 bytes: the CSS header, the empty key and signature areas at 128, 384 and
// 388, and 60 bytes behind them at 644.
inline std::string unsigned_manifest() {
  const std::uint32_t words[] = {6,          161, 0x00010000, 0,  0x00007A5C,
                                 0x20261121, 176, 64,         64, 1};
  std::string file;
  for (std::uint32_t word : words) {
    for (int i = 0; i < 4; ++i, word >>= 8) {
      file += static_cast<char>(word & 0xFF);
    }
  }
  file.resize(644);
  return file + counting(60, 1);
}

}  // namespace tova_fw_builder
