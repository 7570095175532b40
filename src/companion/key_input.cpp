#include "companion/key_input.h"

#include <optional>

#include "companion/ground/naming.h"
#include "crypto/secret_buffer.h"
#include "outside_keys/any_key.h"

namespace tova_fw_builder {

std::unique_ptr<KeyMaterial> load_key(const std::string& path,
                                      const std::string& passphrase_file) {
  std::optional<SecretBuffer> passphrase;
  if (!passphrase_file.empty()) {
    passphrase = naming(passphrase_file,
                        [&] { return read_passphrase_file(passphrase_file); });
  }
  return naming(path, [&] {
    return load_any_key(path, passphrase ? &*passphrase : nullptr);
  });
}

}  // namespace tova_fw_builder
