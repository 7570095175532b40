// The manifest of generation 1.5. A manifest of exactly a whole number of pages
// gets one more page of padding; loaders expect that.
#include "image/kelp15_manifest.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <stdexcept>

#include "crypto/sha_hash.h"
#include "driver/ground/files.h"
#include "driver/ground/log.h"
#include "image/binary_header.h"
#include "image/css_header.h"
#include "image/extended_manifest.h"

namespace tova_fw_builder {

namespace {

constexpr std::uint32_t kCssLength = sizeof(CssHeader);

[[noreturn]] void refuse_length() {
  throw std::runtime_error("Manifest is bigger than MAX of 8kB");
}

}  // namespace

std::uint8_t* Kelp15FwManifest::modulus() {
  return bytes() + offsetof(CssPart, modulus);
}

void Kelp15FwManifest::set_modulus(const std::uint8_t* bytes) {
  std::copy_n(bytes, buffer_.front.modulus.size(), modulus());
}

std::uint8_t* Kelp15FwManifest::exponent() {
  return bytes() + offsetof(CssPart, exponent);
}

void Kelp15FwManifest::set_exponent(const std::uint8_t* bytes) {
  std::copy_n(bytes, buffer_.front.exponent.size(), exponent());
}

std::uint8_t* Kelp15FwManifest::signature() {
  return bytes() + offsetof(CssPart, signature);
}

void Kelp15FwManifest::set_signature(const std::uint8_t* bytes) {
  std::copy_n(bytes, buffer_.front.signature.size(), signature());
}

void Kelp15FwManifest::compute_hash(std::uint8_t* out) {
  const std::uint32_t first = buffer_.front.css.header_len * 4;
  const std::uint32_t length =
      (buffer_.front.css.size - buffer_.front.css.header_len) * 4;
  // A length that is negative as the hash sees it is the hash's to refuse, and
  // it does so before it reads a byte.
  constexpr auto kLongest =
      std::uint32_t{std::numeric_limits<std::int32_t>::max()};
  const bool inside =
      first <= kMaxManifestLength && length <= kMaxManifestLength - first;
  if (length <= kLongest && !inside) refuse_length();
  Sha256Hash hash(bytes(), kCssLength);
  hash.update(bytes() + std::min(first, kMaxManifestLength), length);
  hash.final(out);
  // Signing takes the digest as a number, least significant byte first.
  std::reverse(out, out + 32);
}

void Kelp15FwManifest::set_debug() {
  buffer_.front.css.module_id =
      buffer_.front.css.module_id | CssHeader::kDebugSignature;
}

void Kelp15FwManifest::write(std::ostream& stream, Image& image) {
  const std::uint64_t total = manifest_size(image.map()) + sizeof(CssPart);
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
  write_zeros(stream, sizeof(CssPart) - kCssLength);
  write_binary_header(image.map(), stream, padded);
  write_zeros(stream, pad);
}

void Kelp15FwManifest::write_extended(std::ostream& stream, Image& image) {
  log_info("Create extended manifest");
  write_extended_manifest(image.map(), stream);
}

void Kelp15FwManifest::write_raw(std::ostream& stream) {
  stream.write(reinterpret_cast<const char*>(bytes()),
               std::streamsize{buffer_.front.css.size} * 4);
}

std::unique_ptr<ImageManifest> read_kelp15_manifest(std::istream& stream) {
  auto manifest = std::make_unique<Kelp15FwManifest>();
  CssHeader css;
  stream.read(reinterpret_cast<char*>(&css), kCssLength);
  const std::uint64_t length = std::uint64_t{css.size} * 4;
  if (length > kMaxManifestLength) refuse_length();
  const bool wraps = length < kCssLength;
  const std::uint64_t end = wraps ? kMaxManifestLength : length;
  stream.read(reinterpret_cast<char*>(manifest->bytes() + kCssLength),
              static_cast<std::streamsize>(end - kCssLength));
  if (wraps && stream.peek() != std::istream::traits_type::eof()) {
    refuse_length();
  }
  manifest->buffer_.front.css = css;
  return manifest;
}

}  // namespace tova_fw_builder
