// What a build without OpenSSL says to PEM and DER.
#include <stdexcept>

#include "outside_keys/outside_key.h"

namespace tova_fw_builder {

namespace {

[[noreturn]] void refuse() {
  throw std::runtime_error(
      "this tova_fw was built without OpenSSL, and knows no PEM and no DER");
}

}  // namespace

bool outside_keys_are_known() { return false; }

std::unique_ptr<KeyMaterial> read_outside_key(std::span<const std::uint8_t>,
                                              const SecretBuffer*,
                                              const std::string&) {
  refuse();
}

SecretBuffer pem_of_key(KeyMaterial&, bool) { refuse(); }

bool numbers_hold(KeyMaterial&) { refuse(); }

}  // namespace tova_fw_builder
