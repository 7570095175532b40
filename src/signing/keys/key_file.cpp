// Reads RSA key files. The form is found by its first piece of text anywhere in
// the first 100 bytes, while the reading begins at the file's first byte: a
// file with something ahead of the key is recognised and then refused.
#include "signing/keys/key_file.h"

#include <algorithm>
#include <cstring>
#include <istream>
#include <span>
#include <stdexcept>
#include <string_view>

#include "crypto/secret_buffer.h"
#include "driver/ground/byte_dump.h"
#include "driver/ground/files.h"
#include "driver/ground/log.h"

namespace tova_fw_builder {

namespace {

// One layout of a key file: literal pieces of text, and between each two of
// them a field in binary.
struct KeyFormat {
  std::uint32_t exponent_length;
  bool public_only;
  std::span<const std::string_view> pieces;
};

constexpr std::string_view kPairPieces3[] = {
    "(8:sequence(10:public-key(16:rsa-pkcs1-sha256(1:e3:",
    ")(1:n256:",
    ")))(11:private-key(16:rsa-pkcs1-sha256(1:e3:",
    ")(1:n256:",
    ")(1:d256:",
    ")(1:p128:",
    ")(1:q128:",
    ")(1:a128:",
    ")(1:b128:",
    ")(1:c128:",
    "))))",
};

constexpr std::string_view kPublicPieces3[] = {
    "(10:public-key(16:rsa-pkcs1-sha256(1:e3:",
    ")(1:n256:",
    ")))",
};

constexpr std::string_view kPairPieces1[] = {
    "(8:sequence(10:public-key(16:rsa-pkcs1-sha256(1:e1:",
    ")(1:n256:",
    ")))(11:private-key(16:rsa-pkcs1-sha256(1:e1:",
    ")(1:n256:",
    ")(1:d256:",
    ")(1:p128:",
    ")(1:q128:",
    ")(1:a128:",
    ")(1:b128:",
    ")(1:c128:",
    "))))",
};

constexpr std::string_view kPublicPieces1[] = {
    "(10:public-key(16:rsa-pkcs1-sha256(1:e1:",
    ")(1:n256:",
    ")))",
};

// In the order of recognition: the public form's first piece stands inside the
// pair form's, so the pair form is tried first.
constexpr KeyFormat key_formats[] = {
    {3, false, kPairPieces3},
    {3, true, kPublicPieces3},
    {1, false, kPairPieces1},
    {1, true, kPublicPieces1},
};

constexpr std::size_t kProbeLength = 100;

// A file of fewer than 100 bytes leaves `in` failed, so that nothing more is
// read from it.
const KeyFormat& recognize_format(std::istream& in) {
  // The last byte is never read into: it ends the text of the message.
  std::array<char, kProbeLength + 1> probe{};
  in.read(probe.data(), kProbeLength);
  const std::string_view bytes(probe.data(), kProbeLength);
  for (const KeyFormat& format : key_formats) {
    if (bytes.find(format.pieces[0]) != bytes.npos) return format;
  }
  throw std::runtime_error(std::string("Key type not recognized :\r\n") +
                           probe.data());
}

enum class FieldOrder { kAsInFile, kReversed };

// Goes through a file piece by piece.
class KeyFileReader {
 public:
  KeyFileReader(std::istream& in, const KeyFormat& format)
      : in_(in), next_piece_(format.pieces.begin()) {}

  void expect_piece() {
    std::string found(next_piece_->size(), '\0');
    in_.read(found.data(), static_cast<std::streamsize>(found.size()));
    if (found != *next_piece_++) {
      throw std::runtime_error("Expected std::string not found");
    }
  }

  // The next piece and the field behind it. A file that ends inside the field
  // fails only at the piece that should follow.
  void read_field(const char* label, std::span<std::uint8_t> field,
                  FieldOrder order = FieldOrder::kReversed) {
    expect_piece();
    in_.read(reinterpret_cast<char*>(field.data()),
             static_cast<std::streamsize>(field.size()));
    if (order == FieldOrder::kReversed) {
      std::reverse(field.begin(), field.end());
    }
    log_detail(ByteDump{field.data(), field.size(), label});
  }

 private:
  std::istream& in_;
  std::span<const std::string_view>::iterator next_piece_;
};

}  // namespace

KeyMaterial::~KeyMaterial() { secure_wipe(this, sizeof(*this)); }

std::unique_ptr<KeyMaterial> load_key_file(const std::string& path) {
  log_info("Reading keys from: ", path);
  // The stream reads ahead into memory that is wiped like the key itself.
  constexpr std::size_t kReadAhead = 2048;
  const SecretBuffer read_ahead(kReadAhead);
  const auto in = open_binary_input(
      path, {reinterpret_cast<char*>(read_ahead.data()), kReadAhead});
  auto key = std::make_unique<KeyMaterial>();
  const KeyFormat& format = recognize_format(*in);
  in->seekg(0);

  const std::size_t e = format.exponent_length;
  KeyFileReader reader(*in, format);
  reader.read_field("pub_exponent", std::span(key->pub_exponent).first(e),
                    FieldOrder::kAsInFile);
  reader.read_field("pub_modulus", key->pub_modulus);
  if (!format.public_only) {
    reader.read_field("priv_exponent", std::span(key->priv_exponent).first(e),
                      FieldOrder::kAsInFile);
    reader.read_field("priv_modulus", key->priv_modulus);
    reader.read_field("priv_d", key->priv_d);
    reader.read_field("priv_p", key->priv_p);
    reader.read_field("priv_q", key->priv_q);
    reader.read_field("priv_a", key->priv_a);
    reader.read_field("priv_b", key->priv_b);
    reader.read_field("priv_c", key->priv_c);
  }
  reader.expect_piece();
  return key;
}

}  // namespace tova_fw_builder
