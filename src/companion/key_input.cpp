// A passphrase in a file is its first line, as OpenSSL takes it.
#include "companion/key_input.h"

#include <algorithm>
#include <cstdint>

#include "companion/ground/naming.h"
#include "outside_keys/any_key.h"

namespace tova_fw_builder {

std::optional<SecretBuffer> passphrase_in(const std::string& file) {
  if (file.empty()) return std::nullopt;
  const SecretBuffer bytes =
      naming(file, [&] { return read_secret_file(file); });
  const std::uint8_t* begin = bytes.data();
  const std::uint8_t* end = std::find(begin, begin + bytes.size(), '\n');
  SecretBuffer line(static_cast<std::size_t>(end - begin));
  std::copy(begin, end, line.data());
  return line;
}

std::unique_ptr<KeyMaterial> load_key(const std::string& path,
                                      const std::string& passphrase_file) {
  const auto passphrase = passphrase_in(passphrase_file);
  return naming(path, [&] {
    return load_any_key(path, passphrase ? &*passphrase : nullptr);
  });
}

}  // namespace tova_fw_builder
