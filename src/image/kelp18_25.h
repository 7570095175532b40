// image/kelp18_25.h
// Generations 1.8 and 2.5: one code with a table of differences, which are the
// digest and the sizes that follow from it. Both are signed outside this tool:
// the binary leaves room in front for what the signer puts there.
//
// The binary, with `css` the CSS header size: zero bytes, at 8192 - css the
// binary header with its tables, zero bytes, at 32768 - css the contents. The
// manifest, byte by byte: docs/file-formats.md.
#pragma once

#include <array>
#include <cstdint>

#include "crypto/sha_hash.h"
#include "driver/ground/wire.h"
#include "image/image.h"
#include "image/records/metadata_extension.h"
#include "image/unsigned_manifest.h"

namespace tova_fw_builder {

// The differences.
struct Kelp18Facts {
  using Hash = Sha256Hash;
  static constexpr std::size_t kDigestLength = kKelp18DigestLength;
  static constexpr const char* kLogPrefix = "kELP1.8: ";
};
struct Kelp25Facts {
  using Hash = Sha384Hash;
  static constexpr std::size_t kDigestLength = kKelp25DigestLength;
  static constexpr const char* kLogPrefix = "kELP2.5: ";
};

// The package extension, the frame of the metadata extension. It goes to no
// file: all that is seen of it is the metadata digest, in the log.
template <typename Facts>
struct PackageExtension {
  Le32 extension_type = 15;
  Le32 extension_length = sizeof(PackageExtension);
  Le32 reserved_8;
  std::array<std::uint8_t, 20> reserved_12{};
  std::array<char, 12> name{'T', 'O', 'V', 'A', ' ', 'F', 'W'};
  std::uint8_t kind = 2;
  std::array<std::uint8_t, 3> reserved_45{};
  Le32 metadata_length = sizeof(MetadataExtension<Facts::kDigestLength>);
  std::array<std::uint8_t, Facts::kDigestLength> metadata_digest{};
};
static_assert(sizeof(PackageExtension<Kelp18Facts>) == 84 &&
              alignof(PackageExtension<Kelp18Facts>) == 1);
static_assert(sizeof(PackageExtension<Kelp25Facts>) == 100);

template <typename Facts>
class PaddedImage : public Image {
 public:
  using Image::Image;

  // Writes the header behind the contents, in front of them, then takes the
  // digest of the whole file. A `css_header_size` above 32768 (or 8192) wraps
  // at 32 bits and puts the contents (or the header) near 4 GiB, with a hole
  // in front. Tables that don't fit ahead of the contents overwrite them.
  void write(std::iostream& stream, const std::string& path,
             std::uint32_t css_header_size) override;
  std::unique_ptr<ImageManifest> create_manifest(
      bool debug, std::uint32_t imr_type) override;

  // Both set by write(): of the whole binary. A binary that couldn't be opened
  // has the length 2^64 - 1 and the digest of nothing.
  std::uint64_t image_size = 0;
  std::array<std::uint8_t, Facts::kDigestLength> image_hash{};
};

template <typename Facts>
class MetadataManifest : public UnsignedManifest {
 public:
  MetadataManifest() = default;
  // Takes length and digest of a written image and logs both digests.
  MetadataManifest(const PaddedImage<Facts>& image, bool debug,
                   std::uint32_t imr_type);

  void write(std::ostream& stream, Image& image) override;
  void write_extended(std::ostream& stream, Image& image) override;

 private:
  PackageExtension<Facts> package_;
  MetadataExtension<Facts::kDigestLength> metadata_;
};

using Kelp18Image = PaddedImage<Kelp18Facts>;
using Kelp25Image = PaddedImage<Kelp25Facts>;
using Kelp18FwManifest = MetadataManifest<Kelp18Facts>;
using Kelp25FwManifest = MetadataManifest<Kelp25Facts>;

extern template class PaddedImage<Kelp18Facts>;
extern template class PaddedImage<Kelp25Facts>;
extern template class MetadataManifest<Kelp18Facts>;
extern template class MetadataManifest<Kelp25Facts>;

}  // namespace tova_fw_builder
