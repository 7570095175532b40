// Without a terminal, OpenSSL would ask on the standard error and read the
// standard input: so the terminal is looked for first.
#include "outside_keys/passphrase_prompt.h"

#include <openssl/evp.h>

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <string_view>

#include "companion/ground/printable.h"

namespace tova_fw_builder {

namespace {

constexpr std::size_t kMostPassphrase = 1023;

bool has_terminal() { return std::ifstream("/dev/tty").is_open(); }

}  // namespace

int answer_passphrase(char* place, int size, int, void* data) {
  auto& passphrase = *static_cast<Passphrase*>(data);
  passphrase.asked = true;
  const int room = std::min<int>(size, kMostPassphrase + 1);
  if (passphrase.given != nullptr) {
    const std::size_t length =
        std::min(passphrase.given->size(), static_cast<std::size_t>(room - 1));
    std::copy_n(passphrase.given->data(), length, place);
    passphrase.answered = true;
    return static_cast<int>(length);
  }
  const std::string prompt =
      "Passphrase for " + printable(passphrase.name) + ": ";
  if (!has_terminal() ||
      EVP_read_pw_string(place, room, prompt.c_str(), 0) != 0) {
    return -1;
  }
  passphrase.answered = true;
  return static_cast<int>(std::string_view(place).size());
}

}  // namespace tova_fw_builder
