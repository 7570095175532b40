// The layouts of a key file as tables, and their reading.
#include <algorithm>
#include <array>
#include <stdexcept>

#include "driver/ground/byte_dump.h"
#include "driver/ground/log.h"
#include "signing/keys/key_file.h"

namespace tova_fw_builder {

namespace {

constexpr std::array<std::string_view, 11> pair_pieces(
    std::string_view start, std::string_view private_start) {
  return {start,       ")(1:n256:", private_start, ")(1:n256:",
          ")(1:d256:", ")(1:p128:", ")(1:q128:",   ")(1:a128:",
          ")(1:b128:", ")(1:c128:", "))))"};
}

constexpr auto kPairPieces3 =
    pair_pieces("(8:sequence(10:public-key(16:rsa-pkcs1-sha256(1:e3:",
                ")))(11:private-key(16:rsa-pkcs1-sha256(1:e3:");
constexpr auto kPairPieces1 =
    pair_pieces("(8:sequence(10:public-key(16:rsa-pkcs1-sha256(1:e1:",
                ")))(11:private-key(16:rsa-pkcs1-sha256(1:e1:");

constexpr std::array<std::string_view, 3> public_pieces(
    std::string_view start) {
  return {start, ")(1:n256:", ")))"};
}

constexpr auto kPublicPieces3 =
    public_pieces("(10:public-key(16:rsa-pkcs1-sha256(1:e3:");
constexpr auto kPublicPieces1 =
    public_pieces("(10:public-key(16:rsa-pkcs1-sha256(1:e1:");

// The start of a public format stands inside that of the pair format, and it is
// looked for anywhere: so the pairs are tried first.
constexpr KeyFormat kKeyFormats[] = {
    {3, false, kPairPieces3},
    {3, true, kPublicPieces3},
    {1, false, kPairPieces1},
    {1, true, kPublicPieces1},
};

// Takes the bytes of a field off the start of `file`. A file that ends inside
// the field fails only at the piece that should follow.
void read_field(std::string_view& file, const KeyField& field) {
  file.remove_prefix(file.copy(reinterpret_cast<char*>(field.bytes.data()),
                               field.bytes.size()));
  if (field.reversed) std::ranges::reverse(field.bytes);
  log_detail(ByteDump{field.bytes.data(), field.bytes.size(), field.label});
}

}  // namespace

std::size_t KeyFormat::length() const {
  std::size_t length = 0;
  for (const std::string_view piece : pieces) length += piece.size();
  KeyMaterial key;
  for (const auto& field : fields_of(key, *this)) length += field.bytes.size();
  return length;
}

std::span<const KeyFormat> key_formats() { return kKeyFormats; }

const KeyFormat& recognize_format(std::string_view probe) {
  for (const KeyFormat& format : kKeyFormats) {
    if (probe.find(format.pieces[0]) != probe.npos) return format;
  }
  // Any file may be named here, and the text is logged: what() ends it at a
  // zero byte.
  throw std::runtime_error("Key type not recognized :\r\n" +
                           std::string(probe));
}

std::vector<KeyField> fields_of(KeyMaterial& key, const KeyFormat& format) {
  const std::size_t e = format.exponent_length;
  // Exponents stay in the order of the file. That is wrong for three bytes that
  // read differently backwards, but fielded images were signed so.
  std::vector<KeyField> fields = {
      {"pub_exponent", std::span(key.pub_exponent).first(e), false},
      {"pub_modulus", key.pub_modulus, true},
      {"priv_exponent", std::span(key.priv_exponent).first(e), false},
      {"priv_modulus", key.priv_modulus, true},
      {"priv_d", key.priv_d, true},
      {"priv_p", key.priv_p, true},
      {"priv_q", key.priv_q, true},
      {"priv_a", key.priv_a, true},
      {"priv_b", key.priv_b, true},
      {"priv_c", key.priv_c, true},
  };
  if (format.public_only) fields.resize(2);
  return fields;
}

std::unique_ptr<KeyMaterial> key_of_format(std::string_view file,
                                           const KeyFormat& format) {
  auto key = std::make_unique<KeyMaterial>();
  const auto fields = fields_of(*key, format);
  for (std::size_t i = 0; i < format.pieces.size(); ++i) {
    const std::string_view piece = format.pieces[i];
    if (!file.starts_with(piece)) {
      throw std::runtime_error("Expected std::string not found");
    }
    file.remove_prefix(piece.size());
    // The last piece has none behind it.
    if (i < fields.size()) read_field(file, fields[i]);
  }
  return key;
}

}  // namespace tova_fw_builder
