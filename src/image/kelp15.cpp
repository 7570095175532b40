// Generation 1.5. A manifest of exactly a whole number of pages gets one more
// page of padding; loaders expect that.
#include "image/kelp15.h"

#include <algorithm>
#include <cstddef>
#include <stdexcept>

#include "crypto/sha_hash.h"
#include "driver/ground/files.h"
#include "driver/ground/log.h"
#include "image/binary_header.h"
#include "layout/content_writer.h"

namespace tova_fw_builder {

namespace {

[[noreturn]] void refuse_length() {
  throw std::runtime_error("Manifest is bigger than MAX of 8kB");
}

}  // namespace

void Kelp15Image::write(std::iostream& stream, const std::string& path,
                        std::uint32_t /*css_header_size*/) {
  write_module_contents(map(), stream, path);
}

std::unique_ptr<ImageManifest> Kelp15Image::create_manifest(
    bool debug, std::uint32_t /*imr_type*/) {
  auto manifest = std::make_unique<Kelp15FwManifest>();
  manifest->debug = debug;
  manifest->module_type = CssHeader::kModuleType;
  return manifest;
}

std::uint8_t* Kelp15FwManifest::modulus() {
  return bytes() + offsetof(CssPart, modulus);
}

void Kelp15FwManifest::set_modulus(const std::uint8_t* area) {
  std::copy_n(area, buffer_.front.modulus.size(), modulus());
}

std::uint8_t* Kelp15FwManifest::exponent() {
  return bytes() + offsetof(CssPart, exponent);
}

void Kelp15FwManifest::set_exponent(const std::uint8_t* area) {
  std::copy_n(area, buffer_.front.exponent.size(), exponent());
}

std::uint8_t* Kelp15FwManifest::signature() {
  return bytes() + offsetof(CssPart, signature);
}

void Kelp15FwManifest::set_signature(const std::uint8_t* area) {
  std::copy_n(area, buffer_.front.signature.size(), signature());
}

// Key and signature between the two stay out, so that a manifest can be signed
// again. The words come from the file, and their products wrap at 32 bits.
std::array<std::span<const std::uint8_t>, 2> Kelp15FwManifest::signed_parts() {
  const CssHeader& css = buffer_.front.css;
  const std::uint32_t first = css.header_len * 4;
  // A length that is negative as the hash sees it is the hash's to refuse.
  const auto length = static_cast<std::uint32_t>(
      Sha256Hash::taken_at_once((css.size - css.header_len) * 4));
  if (first > kMaxManifestLength || length > kMaxManifestLength - first) {
    refuse_length();
  }
  return {{{bytes(), sizeof(CssHeader)}, {bytes() + first, length}}};
}

void Kelp15FwManifest::compute_hash(std::uint8_t* out) {
  Sha256Hash hash;
  for (const auto part : signed_parts()) hash.update(part.data(), part.size());
  hash.final(out);
  // Signing takes the digest as a number, least significant byte first.
  std::reverse(out, out + 32);
}

void Kelp15FwManifest::set_debug() {
  Le32& id = buffer_.front.css.module_id;
  id = id | CssHeader::kDebugSignature;
}

void Kelp15FwManifest::write(std::ostream& stream, const FwOutMap& map) {
  const std::uint64_t total = manifest_size(map) + sizeof(CssPart);
  const std::uint64_t pad = kPageSize - total % kPageSize;
  if (total + pad > kMaxManifestLength) refuse_length();
  const auto padded = static_cast<std::uint32_t>(total + pad);
  // Pages hold whole words; kept to guard the arithmetic above.
  if (padded % 4 != 0) {
    throw std::runtime_error("Invalid manifest size - must be multiple of 4");
  }
  buffer_.front.css =
      fill_css_header(padded, debug, bcd_date(std::time(nullptr)));
  if (log_level() >= kLogInfo) {
    print_css_header(LogLine(kLogInfo).stream(), buffer_.front.css);
  }
  write_record(stream, buffer_.front.css);
  // The tables go straight to the stream. The symbol table among them counts
  // nowhere: it pushes the zeros back, behind the size that is recorded.
  write_zeros(stream, sizeof(CssPart) - sizeof(CssHeader));
  write_binary_header(map, stream, padded);
  write_zeros(stream, pad);
}

void Kelp15FwManifest::write_raw(std::ostream& stream) {
  // Reading has refused a size beyond the buffer.
  write_bytes(stream, {bytes(), std::size_t{buffer_.front.css.size} * 4});
}

std::unique_ptr<ImageManifest> read_kelp15_manifest(
    std::span<const std::uint8_t> file) {
  auto manifest = std::make_unique<Kelp15FwManifest>();
  std::copy_n(file.begin(), std::min(file.size(), sizeof(CssHeader)),
              manifest->bytes());
  const std::uint64_t length =
      std::uint64_t{manifest->buffer_.front.css.size} * 4;
  // Below 32 words the count of bytes behind the CSS header wraps, and all that
  // the file has is taken.
  const bool wraps = length < sizeof(CssHeader);
  if (length > kMaxManifestLength ||
      (wraps && file.size() > kMaxManifestLength)) {
    refuse_length();
  }
  const std::uint64_t end = wraps ? kMaxManifestLength : length;
  std::copy_n(file.begin(), std::min<std::uint64_t>(file.size(), end),
              manifest->bytes());
  return manifest;
}

}  // namespace tova_fw_builder
