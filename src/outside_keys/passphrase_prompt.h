// outside_keys/passphrase_prompt.h
#pragma once

#include <string>

#include "crypto/secret_buffer.h"

namespace tova_fw_builder {

// What the library's question for a passphrase is answered with.
struct Passphrase {
  const SecretBuffer* given;
  const std::string& name;
  bool asked = false;
  bool answered = false;
};

// OpenSSL's callback, with a Passphrase behind `data`: takes the one that is
// given, else asks for it on the terminal, with the name in the prompt. 1023
// bytes of it count. Yields its length, or -1 where there is no terminal or no
// answer.
int answer_passphrase(char* place, int size, int, void* data);

}  // namespace tova_fw_builder
