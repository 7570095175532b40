// Key files on the disk and in memory. Of one on the disk the form is found by
// its first piece of text anywhere in the first 100 bytes, while the reading
// begins at the file's first byte: a file with something ahead of the key is
// recognised and then refused.
#include "signing/keys/key_file.h"

#include <algorithm>
#include <stdexcept>

#include "driver/ground/files.h"
#include "driver/ground/log.h"
#include "signing/keys/key_form.h"

namespace tova_fw_builder {

namespace {

constexpr std::size_t kProbeLength = 100;
// The pair form with an exponent of three bytes. What follows a key is ignored.
constexpr std::size_t kLongestKeyFile = 1585;

const KeyForm& recognize_form(std::string_view probe) {
  for (const KeyForm& form : key_forms()) {
    if (probe.find(form.pieces[0]) != probe.npos) return form;
  }
  // Any file may be named here, and the text is logged: what() ends it at a
  // zero byte.
  throw std::runtime_error("Key type not recognized :\r\n" +
                           std::string(probe));
}

std::size_t length_of(const KeyForm& form, std::span<const KeyField> fields) {
  std::size_t length = 0;
  for (const std::string_view piece : form.pieces) length += piece.size();
  for (const KeyField& field : fields) length += field.bytes.size();
  return length;
}

std::uint8_t* put(std::uint8_t* at, std::string_view piece) {
  return std::copy(piece.begin(), piece.end(), at);
}

std::uint8_t* put(std::uint8_t* at, const KeyField& field) {
  const auto bytes = field.bytes;
  return field.reversed ? std::reverse_copy(bytes.begin(), bytes.end(), at)
                        : std::copy(bytes.begin(), bytes.end(), at);
}

const KeyForm& form_for(const KeyMaterial& key, bool public_only) {
  const auto& e = key.pub_exponent;
  // The bytes of the file stand first, and zeros behind them.
  const bool short_exponent = e[1] == 0 && e[2] == 0;
  const auto forms = key_forms();
  return *std::ranges::find_if(forms, [&](const KeyForm& form) {
    return form.public_only == public_only &&
           (form.exponent_length == 1) == short_exponent;
  });
}

}  // namespace

std::unique_ptr<KeyMaterial> load_key_file(const std::string& path) {
  log_info("Reading keys from: ", path);
  // Read once, as a pipe can't be read again, into memory that is wiped like
  // the key itself.
  const SecretBuffer bytes(kLongestKeyFile);
  const std::size_t length = read_start(path, {bytes.data(), kLongestKeyFile});
  const std::string_view file(reinterpret_cast<const char*>(bytes.data()),
                              kLongestKeyFile);
  const KeyForm& form = recognize_form(file.substr(0, kProbeLength));
  // A file below the length of the probe is recognised, but never read.
  return key_of_form(file.substr(0, length < kProbeLength ? 0 : length), form);
}

std::unique_ptr<KeyMaterial> key_of_text(std::string_view file) {
  const auto forms = key_forms();
  const auto form = std::ranges::find_if(forms, [&](const KeyForm& candidate) {
    return file.starts_with(candidate.pieces[0]);
  });
  return form == forms.end() ? nullptr : key_of_form(file, *form);
}

SecretBuffer text_of_key(KeyMaterial& key, bool public_only) {
  const KeyForm& form = form_for(key, public_only);
  const auto fields = fields_of(key, form);
  SecretBuffer text(length_of(form, fields));
  std::uint8_t* at = text.data();
  auto piece = form.pieces.begin();
  for (const KeyField& field : fields) at = put(put(at, *piece++), field);
  put(at, *piece);
  return text;
}

bool has_private_part(const KeyMaterial& key) {
  const auto is_set = [](std::uint8_t byte) { return byte != 0; };
  return std::ranges::any_of(key.priv_modulus, is_set) ||
         std::ranges::any_of(key.priv_d, is_set);
}

}  // namespace tova_fw_builder
