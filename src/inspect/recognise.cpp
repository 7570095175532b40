#include "inspect/recognise.h"

#include <algorithm>

#include "image/records/binary_header.h"
#include "image/records/css_part.h"
#include "image/records/extended_manifest.h"
#include "image/records/metadata_extension.h"
#include "inspect/decoders.h"
#include "layout/records/out_map.h"
#include "signing/keys/key_file.h"

namespace tova_fw_builder {
namespace {

using Metadata18 = MetadataExtension<kKelp18DigestLength>;
using Metadata25 = MetadataExtension<kKelp25DigestLength>;

// Each stands ahead of a private number, or of all.
constexpr std::string_view kPrivateTexts[] = {
    "(11:private-key(", "(1:d256:", "(1:p128:", "(1:q128:",
    "(1:a128:",         "(1:b128:", "(1:c128:"};
constexpr std::uint64_t kPrivateSearched = 1024 * 1024;

// What a key file begins with, ahead of the length of the exponent, which may
// be damaged.
std::string_view head_of(const KeyFormat& format) {
  return format.pieces[0].substr(0, format.pieces[0].size() - 2);
}

Found key_at(std::string_view bytes) {
  Found found;
  for (const KeyFormat& format : key_formats()) {
    if (!bytes.starts_with(head_of(format))) continue;
    const bool is_exact = bytes.starts_with(format.pieces[0]);
    if (found.length != 0 && !is_exact) continue;
    found = {format.public_only ? Format::kPublicKey : Format::kKeyPair,
             format.length()};
  }
  return found;
}

template <typename Record>
Wiped<Record> record_of(std::string_view bytes) {
  Wiped<Record> record;
  std::copy_n(bytes.data(), std::min(bytes.size(), sizeof(Record)),
              reinterpret_cast<char*>(&record));
  return record;
}

std::uint32_t word_of(const std::array<char, 4>& mark) {
  return record_of<Le32>({mark.data(), mark.size()});
}

bool has_mark(const ByteSource& source, std::uint64_t offset) {
  return source.stands({TovaFwBinaryHeader::kMark.data(), 4}, offset);
}

bool is_metadata_length(std::uint32_t length) {
  return length == sizeof(Metadata18) || length == sizeof(Metadata25);
}

// One damaged field doesn't hide a manifest: two of three must be right.
bool is_manifest(const ByteSource& source) {
  const auto css = record_at<CssHeader>(source, 0);
  return (css.module_type == CssHeader::kModuleType) +
             (css.header_len == CssHeader::kPartLength &&
              css.mod_vendor == CssHeader::kVendor) +
             has_mark(source, sizeof(CssPart)) >=
         2;
}

// A header by itself may as well be that of a manifest inside a flash image. In
// front of a binary's own stand zeros, or what a signer has put there, and then
// the page count is that of the file.
bool is_binary(const ByteSource& source) {
  const auto place = find_binary_header(source);
  if (!place) return false;
  const WipedBytes front = source.bytes(0, *place);
  const auto is_set = [](char byte) { return byte != 0; };
  if (std::ranges::none_of(front, is_set)) return true;
  const auto header = record_at<TovaFwBinaryHeader>(source, *place);
  return header.preload_page_count * std::uint64_t{kPageSize} ==
         source.size() + kSignedHeaderOffset - *place;
}

bool is_package_descriptor(const ByteSource& source) {
  const WipedBytes bytes = source.bytes(0, 4096);
  const std::string_view text = view_of(bytes);
  if (text.starts_with("# TOVA FW Image Builder ver ")) return true;
  int seen = 0;
  for (const std::string_view line : {"\nver ", "\nbld ", "\nmft ", "\nbin "}) {
    // The first line has no line feed in front.
    if (text.starts_with(line.substr(1)) || text.find(line) != text.npos) {
      ++seen;
    }
  }
  return seen >= 3;
}

}  // namespace

bool may_be_private(const ByteSource& source) {
  const WipedBytes bytes = source.bytes(0, kPrivateSearched);
  const std::string_view head = view_of(bytes);
  return std::any_of(
      std::begin(kPrivateTexts), std::end(kPrivateTexts),
      [head](std::string_view text) { return head.find(text) != head.npos; });
}

bool is_private_key(const ByteSource& source) {
  const WipedBytes bytes = source.bytes(0, kPrivateSearched);
  const std::string_view head = view_of(bytes);
  // PEM is text; a program that writes PEM isn't.
  const std::size_t mark = head.find("PRIVATE KEY-----");
  if (mark != head.npos && head.find('\0') > mark) return true;
  // DER: a sequence as long as the file, and the version 0 or 1 in it.
  const auto byte = [head](std::size_t i) -> std::uint64_t {
    return i < head.size() ? static_cast<unsigned char>(head[i]) : 0;
  };
  std::size_t at = 2;
  std::uint64_t length = byte(1);
  if (length > 0x80 && length <= 0x83) {
    at += length - 0x80;
    length = 0;
    for (std::size_t i = 2; i < at; ++i) length = length << 8 | byte(i);
  }
  return byte(0) == 0x30 && at + length == source.size() && byte(at) == 2 &&
         byte(at + 1) == 1 && byte(at + 2) <= 1;
}

Found structure_at(std::string_view bytes) {
  if (bytes.size() < 16) return {};
  if (bytes.starts_with('(')) return key_at(bytes);
  // By the first word, since this is asked at a hundredth of all places.
  const std::uint32_t first = record_of<Le32>(bytes);
  if (first == word_of(TovaFwBinaryHeader::kMark)) {
    const auto header = record_of<TovaFwBinaryHeader>(bytes);
    return header.header_len == sizeof(header)
               ? Found{Format::kBinary, sizeof(header)}
               : Found{};
  }
  if (first == word_of(ExtendedManifestHeader::kMark)) {
    const auto extended = record_of<ExtendedManifestHeader>(bytes);
    return extended.version == ExtendedManifestHeader().version &&
                   extended.length >= sizeof(extended)
               ? Found{Format::kExtendedManifest, extended.length}
               : Found{};
  }
  if (first == CssHeader::kModuleType) {
    const auto css = record_of<CssHeader>(bytes);
    return css.header_len == CssHeader::kPartLength &&
                   css.header_ver == CssHeader::kHeaderVersion
               ? Found{Format::kManifest15, css.size * std::uint64_t{4}}
               : Found{};
  }
  if (first == Metadata18::kType && bytes.size() >= 40) {
    const auto metadata = record_of<Metadata18>(bytes);
    return is_metadata_length(metadata.extension_length) &&
                   metadata.version == 0
               ? Found{Format::kMetadata, metadata.extension_length}
               : Found{};
  }
  return {};
}

Format recognise(const ByteSource& source) {
  const WipedBytes bytes = source.bytes(0, kProbeLength);
  const std::string_view head = view_of(bytes);
  for (const KeyFormat& format : key_formats()) {
    // A pair anywhere near the start, as the builder finds it.
    if (!format.public_only && head.find(head_of(format)) != head.npos) {
      return Format::kKeyPair;
    }
    if (head.starts_with(head_of(format))) return Format::kPublicKey;
  }
  const bool has_header = has_mark(source, sizeof(CssPart));
  if (has_header && !has_signer_part(source) && is_manifest(source)) {
    return Format::kManifest15;
  }
  // What stands in front of a binary may begin like any of the others.
  if (is_binary(source)) return Format::kBinary;
  if (is_manifest(source)) return Format::kManifest15;
  if (head.starts_with(
          std::string_view(ExtendedManifestHeader::kMark.data(), 4))) {
    return Format::kExtendedManifest;
  }
  const auto metadata = record_at<Metadata18>(source, 0);
  const bool is_17 = metadata.extension_type == Metadata18::kType;
  if ((is_17 && is_metadata_length(metadata.extension_length)) ||
      (is_metadata_length(static_cast<std::uint32_t>(
           std::min<std::uint64_t>(source.size(), 4096))) &&
       (is_17 || is_metadata_length(metadata.extension_length)))) {
    return Format::kMetadata;
  }
  if (is_package_descriptor(source)) return Format::kPackageDescriptor;
  if (source.size() < 4096 && may_be_private(source)) return Format::kKeyPair;
  return Format::kEmbedded;
}

Format safe_format(const ByteSource& source, std::optional<Format> as) {
  const Format format = as.value_or(recognise(source));
  if (as && is_private_key(source)) return Format::kEmbedded;
  return format != Format::kEmbedded && may_be_private(source)
             ? Format::kKeyPair
             : format;
}

bool is_known(const Inspected& inspected) {
  if (inspected.format != Format::kEmbedded || inspected.length == 0) {
    return true;
  }
  // What modules are made of has whole pages.
  return inspected.length % kPageSize == 0 ||
         find(inspected.root, "embedded[0]") != nullptr;
}

}  // namespace tova_fw_builder
