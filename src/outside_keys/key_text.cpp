// The builder finds a format anywhere near the start of a file; here a key file
// begins with it, so that PEM and DER are never taken for one.
#include "outside_keys/key_text.h"

#include <algorithm>

#include "signing/keys/key_file.h"

namespace tova_fw_builder {

namespace {

const KeyFormat& format_for(const KeyMaterial& key, bool public_only) {
  const auto& e = key.pub_exponent;
  // The bytes of the file stand first, and zeros behind them.
  const bool short_exponent = e[1] == 0 && e[2] == 0;
  const auto formats = key_formats();
  return *std::ranges::find_if(formats, [&](const KeyFormat& format) {
    return format.public_only == public_only &&
           (format.exponent_length == 1) == short_exponent;
  });
}

std::uint8_t* put(std::uint8_t* at, std::string_view piece) {
  return std::copy(piece.begin(), piece.end(), at);
}

std::uint8_t* put(std::uint8_t* at, const KeyField& field) {
  const auto bytes = field.bytes;
  return field.reversed ? std::reverse_copy(bytes.begin(), bytes.end(), at)
                        : std::copy(bytes.begin(), bytes.end(), at);
}

}  // namespace

std::unique_ptr<KeyMaterial> key_of_text(std::string_view file) {
  const auto formats = key_formats();
  const auto format =
      std::ranges::find_if(formats, [&](const KeyFormat& candidate) {
        return file.starts_with(candidate.pieces[0]);
      });
  return format == formats.end() ? nullptr : key_of_format(file, *format);
}

SecretBuffer text_of_key(KeyMaterial& key, bool public_only) {
  const KeyFormat& format = format_for(key, public_only);
  const auto fields = fields_of(key, format);
  SecretBuffer text(format.length());
  std::uint8_t* at = text.data();
  auto piece = format.pieces.begin();
  for (const KeyField& field : fields) at = put(put(at, *piece++), field);
  put(at, *piece);
  return text;
}

}  // namespace tova_fw_builder
