// Key files. A number is shown only where the literal text on both sides of it
// stands as it must: in a damaged file, what lies at a public number's place
// may be part of a private one.
#include <algorithm>

#include "companion/ground/byte_text.h"
#include "companion/ground/message_text.h"
#include "crypto/sha_hash.h"
#include "inspect/decoders.h"

namespace tova_fw_builder {
namespace {

constexpr auto kBytes = Field::Shown::kBytes;

// Literal text, and the number behind it.
struct Piece {
  std::string_view text;
  std::string_view number;  // its name; empty behind the last text
  std::uint64_t length;     // 0: that of the exponent
  bool is_private;          // all behind the word private-key
};

// The E of "e3:" or "e1:" stands for the digit.
constexpr Piece kPairPieces[] = {
    {"(8:sequence(10:public-key(16:rsa-pkcs1-sha256(1:eE:", "exponent", 0,
     false},
    {")(1:n256:", "modulus", 256, false},
    {")))(11:private-key(16:rsa-pkcs1-sha256(1:eE:", "private_exponent", 0,
     true},
    {")(1:n256:", "private_modulus", 256, true},
    {")(1:d256:", "d", 256, true},
    {")(1:p128:", "p", 128, true},
    {")(1:q128:", "q", 128, true},
    {")(1:a128:", "a", 128, true},
    {")(1:b128:", "b", 128, true},
    {")(1:c128:", "c", 128, true},
    {"))))", "", 0, false},
};
constexpr Piece kPublicPieces[] = {
    {"(10:public-key(16:rsa-pkcs1-sha256(1:eE:", "exponent", 0, false},
    {")(1:n256:", "modulus", 256, false},
    {")))", "", 0, false},
};

std::string literal(const Piece& piece, std::uint64_t exponent_length) {
  std::string text(piece.text);
  const std::size_t digit = text.find('E');
  if (digit != text.npos) text[digit] = exponent_length == 1 ? '1' : '3';
  return text;
}

std::string key_hash(std::string modulus, std::string exponent) {
  std::reverse(modulus.begin(), modulus.end());
  exponent.resize(4, '\0');
  const std::string bytes = modulus + exponent;
  Sha256Hash hash(reinterpret_cast<const std::uint8_t*>(bytes.data()),
                  bytes.size());
  std::array<char, 32> digest{};
  hash.final(reinterpret_cast<std::uint8_t*>(digest.data()));
  return hexadecimal({digest.data(), digest.size()});
}

// Goes through a file piece by piece.
class KeyDecoder {
 public:
  KeyDecoder(const ByteSource& source, std::span<const Piece> pieces,
             Inspected& out)
      : source_(source), pieces_(pieces), out_(out) {
    const std::string first = literal(pieces[0], 1);
    exponent_length_ = stands(first, 0) ? 1 : 3;
  }

  void decode() {
    for (std::size_t i = 0; i < pieces_.size(); ++i) {
      take_text(pieces_[i]);
      if (!pieces_[i].number.empty()) {
        take_number(pieces_[i], literal(pieces_[i + 1], exponent_length_));
      }
    }
    finish();
  }

 private:
  bool stands(const std::string& text, std::uint64_t offset) const {
    return source_.bytes(offset, text.size()) == text;
  }

  Field take(Field field, std::uint64_t length) {
    const std::uint64_t there = out_.length - std::min(out_.length, at_);
    field = placed(std::move(field), at_, std::min(length, there));
    at_ += length;
    return field;
  }

  void take_text(const Piece& piece) {
    const std::string text = literal(piece, exponent_length_);
    text_matches_ = stands(text, at_);
    if (!text_matches_) {
      add_problem(out_, std::min(at_, out_.length),
                  "the text " + text + " is missing");
    }
    Field field = text_field("", text_matches_ ? text : "");
    if (!text_matches_) field.kind = Field::Kind::kNothing;
    texts_.add(take(std::move(field), text.size()));
  }

  void take_number(const Piece& piece, const std::string& text_behind) {
    const std::uint64_t length =
        piece.length == 0 ? exponent_length_ : piece.length;
    Field field = text_field(piece.number, "");
    if (piece.is_private) {
      field.kind = Field::Kind::kPrivate;
      field.shown = kBytes;
    } else if (text_matches_ && stands(text_behind, at_ + length)) {
      const std::string bytes = source_.bytes(at_, length);
      field.text = hexadecimal(bytes);
      (piece.number == "modulus" ? modulus_ : exponent_) = bytes;
    } else {
      field.kind = Field::Kind::kNothing;
    }
    out_.root.add(take(std::move(field), length));
  }

  void finish() {
    Field hash = text_field("public_key_hash", "");
    if (modulus_.empty() || exponent_.empty()) {
      hash.kind = Field::Kind::kNothing;
    } else {
      hash.text = key_hash(modulus_, exponent_);
    }
    out_.root.add(std::move(hash));
    out_.root.add(std::move(texts_));
    if (Field* exponent = find(out_.root, "exponent"); !exponent_.empty()) {
      std::uint32_t number = 0;
      for (const char c : exponent_) {
        number = number << 8 | static_cast<unsigned char>(c);
      }
      exponent->note = std::to_string(number);
    }
    if (at_ < out_.length) {
      add_problem(out_, at_,
                  counted(out_.length - at_, "byte") + " behind the key's end");
    }
  }

  const ByteSource& source_;
  std::span<const Piece> pieces_;
  Inspected& out_;
  std::uint64_t exponent_length_ = 3;
  std::uint64_t at_ = 0;
  bool text_matches_ = false;
  std::string modulus_;
  std::string exponent_;
  Field texts_ = list_field("texts", kBytes);
};

void decode_key(const ByteSource& source, std::span<const Piece> pieces,
                const char* title, Inspected& out) {
  out.title = title;
  out.root.add(number_field("bits", 2048));
  KeyDecoder(source, pieces, out).decode();
}

}  // namespace

void decode_key_pair(const ByteSource& source, Inspected& out) {
  decode_key(source, kPairPieces, "RSA key pair", out);
}

void decode_public_key(const ByteSource& source, Inspected& out) {
  decode_key(source, kPublicPieces, "RSA public key", out);
}

}  // namespace tova_fw_builder
