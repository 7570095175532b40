// Key files. A number is shown only where the literal text on both sides of it
// stands as it must: in a damaged file, what lies at a public number's place
// may be part of a private one.
#include <algorithm>
#include <span>
#include <vector>

#include "companion/ground/byte_text.h"
#include "companion/ground/message_text.h"
#include "inspect/decoders.h"
#include "signing/keys/key_file.h"
#include "signing/keys/public_key_hash.h"

namespace tova_fw_builder {
namespace {

constexpr auto kBytes = Field::Shown::kBytes;

// The numbers of a pair; a public key has the first two.
constexpr std::string_view kNumberNames[] = {"exponent",
                                             "modulus",
                                             "private_exponent",
                                             "private_modulus",
                                             "d",
                                             "p",
                                             "q",
                                             "a",
                                             "b",
                                             "c"};
constexpr std::size_t kPublicNumbers = 2;

// Goes through a file piece by piece.
class KeyDecoder {
 public:
  KeyDecoder(const ByteSource& source, const KeyFormat& format, Inspected& out)
      : source_(source), format_(format), out_(out) {}

  void decode() {
    for (std::size_t i = 0; i < format_.pieces.size(); ++i) {
      take_text(format_.pieces[i]);
      if (i < numbers_.size()) take_number(i);
    }
    finish();
  }

 private:
  Field take(Field field, std::uint64_t length) {
    const std::uint64_t there = out_.length - std::min(out_.length, at_);
    field = placed(std::move(field), at_, std::min(length, there));
    at_ += length;
    return field;
  }

  void take_text(std::string_view text) {
    text_matches_ = source_.stands(text, at_);
    if (!text_matches_) {
      add_problem(out_, std::min(at_, out_.length),
                  "the text " + std::string(text) + " is missing");
    }
    Field field = text_field("", text_matches_ ? std::string(text) : "");
    if (!text_matches_) field.kind = Field::Kind::kNothing;
    texts_.add(take(std::move(field), text.size()));
  }

  void take_number(std::size_t i) {
    const std::span<std::uint8_t> number = numbers_[i].bytes;
    Field field = text_field(kNumberNames[i], "");
    if (i >= kPublicNumbers) {
      field.kind = Field::Kind::kPrivate;
      field.shown = kBytes;
    } else if (text_matches_ &&
               source_.stands(format_.pieces[i + 1], at_ + number.size())) {
      std::ranges::copy(source_.bytes(at_, number.size()), number.begin());
      field.text = hexadecimal(number);
      if (kNumberNames[i] == "exponent") field.note = decimal(number);
      if (numbers_[i].reversed) std::ranges::reverse(number);
      ++public_numbers_;
    } else {
      field.kind = Field::Kind::kNothing;
    }
    out_.root.add(take(std::move(field), number.size()));
  }

  static std::string decimal(std::span<const std::uint8_t> bytes) {
    std::uint32_t number = 0;
    for (const std::uint8_t byte : bytes) number = number << 8 | byte;
    return std::to_string(number);
  }

  void finish() {
    Field hash = text_field("public_key_hash", "");
    if (public_numbers_ < kPublicNumbers) {
      hash.kind = Field::Kind::kNothing;
    } else {
      hash.text = hexadecimal(digest_public_key(key_));
    }
    out_.root.add(std::move(hash));
    out_.root.add(std::move(texts_));
    if (at_ < out_.length) {
      add_problem(out_, at_,
                  counted(out_.length - at_, "byte") + " behind the key's end");
    }
  }

  const ByteSource& source_;
  const KeyFormat& format_;
  Inspected& out_;
  KeyMaterial key_;  // its public part, as far as it stands
  const std::vector<KeyField> numbers_ = fields_of(key_, format_);
  std::size_t public_numbers_ = 0;
  std::uint64_t at_ = 0;
  bool text_matches_ = false;
  Field texts_ = list_field("texts", kBytes);
};

// The format that the file begins with; of a damaged start, the first of them.
const KeyFormat& format_of(const ByteSource& source, bool public_only) {
  const auto formats = key_formats();
  auto format = std::ranges::find_if(formats, [&](const KeyFormat& candidate) {
    const std::string_view start = candidate.pieces[0];
    return candidate.public_only == public_only && source.stands(start, 0);
  });
  if (format == formats.end()) {
    format = std::ranges::find(formats, public_only, &KeyFormat::public_only);
  }
  return *format;
}

void decode_key(const ByteSource& source, bool public_only, const char* title,
                Inspected& out) {
  out.title = title;
  out.root.add(number_field("bits", 2048));
  KeyDecoder(source, format_of(source, public_only), out).decode();
}

}  // namespace

void decode_key_pair(const ByteSource& source, Inspected& out) {
  decode_key(source, false, "RSA key pair", out);
}

void decode_public_key(const ByteSource& source, Inspected& out) {
  decode_key(source, true, "RSA public key", out);
}

}  // namespace tova_fw_builder
