// The builder finds a form anywhere near the start of a file; here a key file
// begins with it, so that PEM and DER are never taken for one.
#include "outside_keys/key_text.h"

#include <algorithm>

#include "signing/keys/key_format.h"

namespace tova_fw_builder {

namespace {

const KeyFormat& form_for(const KeyMaterial& key, bool public_only) {
  const auto& e = key.pub_exponent;
  // The bytes of the file stand first, and zeros behind them.
  const bool short_exponent = e[1] == 0 && e[2] == 0;
  const auto forms = key_formats();
  return *std::ranges::find_if(forms, [&](const KeyFormat& form) {
    return form.public_only == public_only &&
           (form.exponent_length == 1) == short_exponent;
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
  const auto forms = key_formats();
  const auto form =
      std::ranges::find_if(forms, [&](const KeyFormat& candidate) {
        return file.starts_with(candidate.pieces[0]);
      });
  return form == forms.end() ? nullptr : key_of_format(file, *form);
}

SecretBuffer text_of_key(KeyMaterial& key, bool public_only) {
  const KeyFormat& form = form_for(key, public_only);
  const auto fields = fields_of(key, form);
  SecretBuffer text(form.length());
  std::uint8_t* at = text.data();
  auto piece = form.pieces.begin();
  for (const KeyField& field : fields) at = put(put(at, *piece++), field);
  put(at, *piece);
  return text;
}

}  // namespace tova_fw_builder
