// tests/signing/keys/key_samples.h
// Key files for tests, put together from their pieces.
#pragma once

#include <string>

#include "support/bytes.h"

namespace tova_fw_builder {

// Numbers most significant byte first, as in a file.
inline std::string public_key_file(const std::string& e, const std::string& n) {
  return "(10:public-key(16:rsa-pkcs1-sha256(1:e" + std::to_string(e.size()) +
         ":" + e + ")(1:n256:" + n + ")))";
}

inline std::string pair_key_file(const std::string& e, const std::string& n,
                                 const std::string& private_n,
                                 const std::string& d) {
  std::string text = "(8:sequence" + public_key_file(e, n) +
                     "(11:private-key(16:rsa-pkcs1-sha256(1:e" +
                     std::to_string(e.size()) + ":" + e +
                     ")(1:n256:" + private_n + ")(1:d256:" + d;
  for (const char name : {'p', 'q', 'a', 'b', 'c'}) {
    text += std::string(")(1:") + name + "128:" + counting(128, name);
  }
  return text + "))))";
}

}  // namespace tova_fw_builder
