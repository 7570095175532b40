#include "companion/key_input.h"

#include "companion/ground/naming.h"
#include "outside_keys/any_key.h"

namespace tova_fw_builder {

std::optional<SecretBuffer> passphrase_in(const std::string& file) {
  if (file.empty()) return std::nullopt;
  return naming(file, [&] { return read_passphrase_file(file); });
}

std::unique_ptr<KeyMaterial> load_key(const std::string& path,
                                      const std::string& passphrase_file) {
  const auto passphrase = passphrase_in(passphrase_file);
  return naming(path, [&] {
    return load_any_key(path, passphrase ? &*passphrase : nullptr);
  });
}

}  // namespace tova_fw_builder
