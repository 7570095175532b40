// Reads RSA key files. The form is found by its first piece of text anywhere in
// the first 100 bytes, while the reading begins at the file's first byte: a
// file with something ahead of the key is recognised and then refused.
#include "signing/keys/key_file.h"

#include <algorithm>
#include <array>
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

constexpr std::string_view kPublicPieces3[] = {
    "(10:public-key(16:rsa-pkcs1-sha256(1:e3:",
    ")(1:n256:",
    ")))",
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
// The pair form with an exponent of three bytes. What follows a key is ignored.
constexpr std::size_t kLongestKeyFile = 1585;

const KeyFormat& recognize_format(std::string_view probe) {
  for (const KeyFormat& format : key_formats) {
    if (probe.find(format.pieces[0]) != probe.npos) return format;
  }
  throw std::runtime_error("Key type not recognized :\r\n" +
                           std::string(probe.substr(0, probe.find('\0'))));
}

enum class FieldOrder { kAsInFile, kReversed };

// Goes through a file piece by piece.
class KeyFileReader {
 public:
  KeyFileReader(std::string_view file, const KeyFormat& format)
      : rest_(file), next_piece_(format.pieces.begin()) {}

  void expect_piece() {
    if (!rest_.starts_with(*next_piece_)) {
      throw std::runtime_error("Expected std::string not found");
    }
    rest_.remove_prefix(next_piece_++->size());
  }

  // The next piece and the field behind it. A file that ends inside the field
  // fails only at the piece that should follow.
  void read_field(const char* label, std::span<std::uint8_t> field,
                  FieldOrder order = FieldOrder::kReversed) {
    expect_piece();
    rest_.remove_prefix(
        rest_.copy(reinterpret_cast<char*>(field.data()), field.size()));
    if (order == FieldOrder::kReversed) {
      std::reverse(field.begin(), field.end());
    }
    log_detail(ByteDump{field.data(), field.size(), label});
  }

 private:
  std::string_view rest_;
  std::span<const std::string_view>::iterator next_piece_;
};

}  // namespace

KeyMaterial::~KeyMaterial() { secure_wipe(this, sizeof(*this)); }

std::unique_ptr<KeyMaterial> load_key_file(const std::string& path) {
  log_info("Reading keys from: ", path);
  // Read once, as a pipe can't be read again, into memory that is wiped like
  // the key itself.
  const SecretBuffer bytes(kLongestKeyFile);
  const std::size_t length = read_start(path, {bytes.data(), kLongestKeyFile});
  const std::string_view file(reinterpret_cast<const char*>(bytes.data()),
                              kLongestKeyFile);
  auto key = std::make_unique<KeyMaterial>();
  const KeyFormat& format = recognize_format(file.substr(0, kProbeLength));

  const std::size_t e = format.exponent_length;
  // A file below the length of the probe is recognised, but never read.
  KeyFileReader reader(file.substr(0, length < kProbeLength ? 0 : length),
                       format);
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
