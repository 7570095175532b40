// The manifest of 1.5: the CSS part, with the public key and the signature once
// it is signed, the binary header with its tables, and zeros. Its `size` leaves
// out the symbol table, so an unsigned file is that much longer, and a signed
// one is cut there.
#include <algorithm>

#include "companion/ground/byte_text.h"
#include "companion/ground/message_text.h"
#include "image/records/css_part.h"
#include "inspect/binary_tables.h"
#include "inspect/date_text.h"
#include "inspect/decoders.h"
#include "inspect/record_fields.h"
#include "signing/keys/public_key_hash.h"

namespace tova_fw_builder {
namespace {

constexpr auto kHex = Field::Radix::kHex;
constexpr auto kLong = Field::Shown::kLong;

std::string words_note(std::uint32_t words) {
  return counted(std::uint64_t{words} * 4, "byte");
}

void add_css(const RecordFields<CssPart>& part, Inspected& out) {
  const CssHeader& css = part->css;
  Field& to = out.root.add(object_field("css"));
  to.add(shown(part.number("module_type", css.module_type), kLong));
  to.add(shown(noted(part.number("header_len", css.header_len),
                     words_note(css.header_len)),
               kLong));
  to.add(shown(part.number("header_ver", css.header_ver, kHex), kLong));
  to.add(part.number("module_id", css.module_id, kHex));
  to.add(shown(part.number("mod_vendor", css.mod_vendor, kHex), kLong));
  to.add(noted(part.number("date", css.date, kHex), date_text(css.date)));
  to.add(noted(part.number("size", css.size), words_note(css.size)));
  to.add(shown(part.number("key_size", css.key_size), kLong));
  to.add(shown(part.number("mod_size", css.mod_size), kLong));
  to.add(shown(part.number("exp_size", css.exp_size), kLong));
  to.add(part.derived(
      bool_field("debug", (css.module_id & CssHeader::kDebugSignature) != 0),
      css.module_id));
  to.add(part.reserved("reserved", css.reserved_40));
}

void check_css(const RecordFields<CssPart>& part, Inspected& out) {
  const CssHeader& css = part->css;
  const struct {
    const char* name;
    const Le32& member;
    std::uint32_t expected;
  } constants[] = {
      {"module_type", css.module_type, CssHeader::kModuleType},
      {"header_len", css.header_len, CssHeader::kPartLength},
      {"header_ver", css.header_ver, CssHeader::kHeaderVersion},
      {"mod_vendor", css.mod_vendor, CssHeader::kVendor},
      {"key_size", css.key_size, CssHeader::kKeyLength},
      {"mod_size", css.mod_size, CssHeader::kKeyLength},
      {"exp_size", css.exp_size, CssHeader::kExponentLength},
  };
  for (const auto& constant : constants) {
    if (constant.member != constant.expected) {
      add_problem(out, part.place(constant.member),
                  std::string(constant.name) + " is " +
                      number_text(constant.member, kHex) + ", not " +
                      number_text(constant.expected, kHex));
    }
  }
  if ((css.module_id & ~CssHeader::kDebugSignature) != 0) {
    add_problem(out, part.place(css.module_id),
                "reserved bits of module_id are set");
  }
  if (date_text(css.date).empty()) {
    add_problem(out, part.place(css.date), "the date is none");
  }
  if (css.size * std::uint64_t{4} > kMaxManifestLength) {
    add_problem(out, part.place(css.size),
                "size is beyond the longest manifest, " +
                    std::to_string(kMaxManifestLength) + " bytes");
  }
}

template <std::size_t N>
bool is_zero(const std::array<std::uint8_t, N>& bytes) {
  return std::all_of(bytes.begin(), bytes.end(),
                     [](std::uint8_t byte) { return byte == 0; });
}

// Adds key and signature; yields whether there are any.
bool add_signature(const RecordFields<CssPart>& part, Inspected& out) {
  const bool is_signed = !is_zero(part->modulus) || !is_zero(part->exponent) ||
                         !is_zero(part->signature);
  const auto where = is_signed ? Field::Shown::kAlways : kLong;
  out.root.add(bool_field("signed", is_signed));
  out.root.add(shown(part.reversed_hex("modulus", part->modulus), kLong));
  Field& exponent =
      out.root.add(shown(part.reversed_hex("exponent", part->exponent), where));
  Le32 number;
  std::copy_n(part->exponent.data(), 4, reinterpret_cast<char*>(&number));
  exponent.note = std::to_string(number);
  out.root.add(shown(part.reversed_hex("signature", part->signature), kLong));
  Field hash = shown(text_field("public_key_hash", ""), where);
  hash.text = hexadecimal(digest_public_key(part->modulus, part->exponent));
  if (!is_signed || !part.is_whole()) {
    hash.kind = Field::Kind::kNothing;
    hash.text.clear();
  }
  out.root.add(std::move(hash));
  return is_signed;
}

void check_length(std::uint64_t size, std::uint64_t symbols, bool is_signed,
                  Inspected& out) {
  if (out.length < size) {
    add_problem(out, out.length,
                "the file ends " + counted(size - out.length, "byte") +
                    " ahead of the manifest's size");
  } else if (out.length != size &&
             (is_signed || out.length != size + symbols)) {
    add_problem(
        out, size,
        counted(out.length - size, "byte") + " behind the manifest's size");
  }
}

}  // namespace

void decode_manifest_15(const ByteSource& source, Inspected& out) {
  const RecordFields<CssPart> part(source, 0);
  add_css(part, out);
  const bool is_signed = add_signature(part, out);
  if (part.is_whole()) {
    check_css(part, out);
  } else {
    add_problem(out, out.length, "the file ends inside the CSS part");
  }
  const std::uint64_t end = decode_binary_tables(source, part.end(), out);
  const Field* count = find(out.root, "symbol_table.count");
  const std::uint64_t symbols = count == nullptr ? 0 : end - count->offset;
  check_length(part->css.size * std::uint64_t{4}, symbols, is_signed, out);

  const bool debug = number_at(out.root, "css.debug") != 0;
  out.title = "manifest of firmware " + image_name(out.root) +
              ", generation 1.5, " +
              (!is_signed ? "unsigned"
               : debug    ? "signed for debug"
                          : "signed for release");
}

}  // namespace tova_fw_builder
