// tests/signing/manifest_sample.h
// A small manifest of generation 1.5, as a build leaves it, and a key pair for
// it.
#pragma once

#include <string>

#include "crypto/rsa_sample.h"
#include "signing/keys/key_samples.h"

namespace tova_fw_builder {

inline std::string sample_pair_file() {
  const std::string e("\1\0\1", 3);
  const std::string n = bytes_of(kSampleModulus);
  return pair_key_file(e, n, n, bytes_of(kSamplePrivateExponent));
}

inline std::string sample_public_file() {
  return public_key_file(std::string("\1\0\1", 3), bytes_of(kSampleModulus));
}

// 704 bytes: the CSS header, the empty key and signature areas at 128, 384 and
// 388, and 60 bytes behind them at 644.
inline std::string unsigned_manifest() {
  const std::uint32_t words[] = {6,          161, 0x00010000, 0,  0x00007A5C,
                                 0x20261121, 176, 64,         64, 1};
  std::string file;
  for (const std::uint32_t word : words) file += le32(word);
  return filled(file, 644) + counting(60);
}

}  // namespace tova_fw_builder
