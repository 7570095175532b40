// The manifest of 1.8 and 2.5, which differ in the digest's length.
#include "companion/ground/message_text.h"
#include "image/records/metadata_extension.h"
#include "inspect/decoders.h"
#include "inspect/record_fields.h"

namespace tova_fw_builder {
namespace {

constexpr auto kHex = Field::Radix::kHex;
constexpr auto kLong = Field::Shown::kLong;

template <std::size_t N>
void check(const RecordFields<MetadataExtension<N>>& extension,
           Inspected& out) {
  const MetadataExtension<N> usual;
  const struct {
    const char* name;
    const Le32& member;
    std::uint32_t expected;
  } constants[] = {
      {"extension_type", extension->extension_type, usual.extension_type},
      {"extension_length", extension->extension_length, usual.extension_length},
      {"version", extension->version, usual.version},
      {"base_offset", extension->base_offset, usual.base_offset},
  };
  for (const auto& constant : constants) {
    if (constant.member != constant.expected) {
      add_problem(out, extension.place(constant.member),
                  std::string(constant.name) + " is " +
                      std::to_string(constant.member) + ", not " +
                      std::to_string(constant.expected));
    }
  }
  if (extension->limit_offset < extension->base_offset) {
    add_problem(out, extension.place(extension->limit_offset),
                "limit_offset lies below base_offset");
  }
}

template <std::size_t N>
void decode(const ByteSource& source, Inspected& out) {
  const RecordFields<MetadataExtension<N>> extension(source, 0);
  const MetadataExtension<N>& record = *extension;
  Field& root = out.root;
  root.add(
      shown(extension.number("extension_type", record.extension_type), kLong));
  root.add(shown(extension.number("extension_length", record.extension_length),
                 kLong));
  root.add(extension.number("tova_imr_type", record.tova_imr_type, kHex));
  root.add(extension.reserved("reserved_12", record.reserved_12));
  root.add(shown(extension.number("version", record.version), kLong));
  root.add(extension.hex("digest", record.image_digest));
  root.add(extension.number("base_offset", record.base_offset, kHex));
  Field& limit =
      root.add(extension.number("limit_offset", record.limit_offset, kHex));
  if (record.limit_offset >= record.base_offset) {
    limit.note = "a binary of " +
                 counted(record.limit_offset - record.base_offset, "byte");
  }
  root.add(extension.reserved("reserved_tail", record.reserved_tail));
  const bool is_18 = N == kKelp18DigestLength;
  root.add(shown(text_field("generation", is_18 ? "1.8" : "2.5"), kLong));
  out.title = std::string("manifest of generation ") + (is_18 ? "1.8" : "2.5");
  if (extension.is_whole()) {
    check(extension, out);
  } else {
    add_problem(out, out.length, "the file ends inside the manifest");
  }
  if (out.length > extension.end()) {
    add_problem(out, extension.end(),
                counted(out.length - extension.end(), "byte") +
                    " behind the manifest's end");
  }
}

}  // namespace

void decode_metadata(const ByteSource& source, Inspected& out) {
  using Kelp25 = MetadataExtension<kKelp25DigestLength>;
  const auto record = record_at<Kelp25>(source, 0);
  // The length that it tells, or, if that is damaged, the length that it has.
  const bool tells =
      record.extension_length == sizeof(Kelp25) ||
      record.extension_length == sizeof(MetadataExtension<kKelp18DigestLength>);
  const bool is_25 = tells ? record.extension_length == sizeof(Kelp25)
                           : out.length >= sizeof(Kelp25);
  if (is_25) {
    decode<kKelp25DigestLength>(source, out);
  } else {
    decode<kKelp18DigestLength>(source, out);
  }
}

}  // namespace tova_fw_builder
