// Keys of any form: the form is told by the first bytes.
#include "outside_keys/any_key.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <system_error>

#include "companion/ground/input_file.h"
#include "driver/ground/native_path.h"
#include "driver/ground/numbers.h"
#include "outside_keys/key_text.h"
#include "outside_keys/manifest_key.h"
#include "outside_keys/outside_key.h"

namespace tova_fw_builder {

namespace {

std::optional<PublicKeyHash> hash_in_hexadecimal(std::string_view text) {
  PublicKeyHash hash{};
  if (text.size() != 2 * hash.size()) return std::nullopt;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const int digit = hex_digit_value(text[i]);
    if (digit < 0) return std::nullopt;
    hash[i / 2] = static_cast<std::uint8_t>(hash[i / 2] << 4 | digit);
  }
  return hash;
}

std::unique_ptr<KeyMaterial> key_of_file(std::string_view text) {
  try {
    return key_of_text(text);
  } catch (const std::runtime_error&) {
    throw std::runtime_error("the key file is damaged or cut off");
  }
}

SecretBuffer first_bytes(const SecretBuffer& bytes, std::size_t length) {
  SecretBuffer first(length);
  std::copy_n(bytes.data(), length, first.data());
  return first;
}

}  // namespace

SecretBuffer read_secret_file(const std::string& path) {
  const SecretBuffer bytes(kLongestKeyFile + 1);
  const std::size_t length = read_head(path, {bytes.data(), bytes.size()});
  if (length > kLongestKeyFile) throw std::runtime_error("is too long");
  return first_bytes(bytes, length);
}

SecretBuffer read_passphrase_file(const std::string& path) {
  const SecretBuffer bytes = read_secret_file(path);
  const std::uint8_t* begin = bytes.data();
  const std::uint8_t* line_end = std::find(begin, begin + bytes.size(), '\n');
  return first_bytes(bytes, static_cast<std::size_t>(line_end - begin));
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

PublicKeyHash trusted_key_hash(const std::string& text) {
  if (const auto hash = hash_in_hexadecimal(text)) return *hash;
  std::error_code ignored;
  if (!std::filesystem::exists(native_path(text), ignored)) {
    throw std::runtime_error(
        "this is neither a hash of 64 hexadecimal digits nor a file");
  }
  try {
    const auto key = load_any_key(text);
    require_manifest_key(*key);
    return digest_public_key(*key);
  } catch (const LockedKey&) {
    throw std::runtime_error(
        "the key is encrypted: give its public half, which 'tova_fw key export "
        "--public' makes");
  }
}

}  // namespace tova_fw_builder
