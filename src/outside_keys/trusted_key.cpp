// Nobody is asked for a passphrase to trust a key: of an encrypted one the
// public half is wanted.
#include "outside_keys/trusted_key.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <system_error>

#include "driver/ground/numbers.h"
#include "driver/ground/paths.h"
#include "outside_keys/any_key.h"
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

}  // namespace

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
