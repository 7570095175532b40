// Keys of any form: the form is told by the first bytes.
#include "outside_keys/any_key.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string_view>

#include "companion/ground/input_file.h"
#include "outside_keys/key_text.h"
#include "outside_keys/outside_key.h"

namespace tova_fw_builder {

namespace {

std::unique_ptr<KeyMaterial> key_of_file(std::string_view text) {
  try {
    return key_of_text(text);
  } catch (const std::runtime_error&) {
    throw std::runtime_error("the key file is damaged or cut off");
  }
}

}  // namespace

SecretBuffer read_secret_file(const std::string& path) {
  const SecretBuffer bytes(kLongestKeyFile + 1);
  const std::size_t length = read_head(path, {bytes.data(), bytes.size()});
  if (length > kLongestKeyFile) throw std::runtime_error("is too long");
  SecretBuffer file(length);
  std::copy_n(bytes.data(), length, file.data());
  return file;
}

std::unique_ptr<KeyMaterial> load_any_key(const std::string& path,
                                          const SecretBuffer* passphrase) {
  const SecretBuffer file = read_secret_file(path);
  if (file.size() == 0) throw std::runtime_error("is empty, and so no key");
  const std::span<const std::uint8_t> bytes(file.data(), file.size());
  const std::string_view text(reinterpret_cast<char*>(file.data()),
                              file.size());
  if (auto key = key_of_file(text)) return key;
  return read_outside_key(bytes, passphrase, path);
}

}  // namespace tova_fw_builder
