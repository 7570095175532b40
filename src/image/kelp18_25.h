// image/kelp18_25.h
// Generations 1.8 and 2.5, one code: they differ in the digest, and in the
// sizes that follow from it. Both are signed outside this tool: the binary
// leaves room in front for what the signer puts there.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "image/image.h"
#include "image/records/metadata_extension.h"

namespace tova_fw_builder {

template <std::size_t DigestLength>
class PaddedImage : public Image {
 public:
  using Image::Image;

  // Writes the header behind the contents, in front of them, then takes the
  // digest of the whole file. A `css_header_size` above 32768 (or 8192) wraps
  // at 32 bits and puts the contents (or the header) near 4 GiB, with a hole
  // in front. Tables that don't fit ahead of the contents overwrite them.
  // Throws the hash's ZelError, too, for a file of 2^31 bytes modulo 2^32 or
  // more.
  void write(std::iostream& stream, const std::string& path,
             std::uint32_t css_header_size) override;
  std::unique_ptr<ImageManifest> create_manifest(
      bool debug, std::uint32_t imr_type) override;

  // Both set by write(): of the whole binary.
  std::uint64_t image_size = 0;
  std::array<std::uint8_t, DigestLength> image_hash{};
};

template <std::size_t DigestLength>
class MetadataManifest : public UnsignedManifest {
 public:
  // Takes length and digest of a written image and logs both digests.
  MetadataManifest(const PaddedImage<DigestLength>& image, bool debug,
                   std::uint32_t imr_type);

  void write(std::ostream& stream, const FwOutMap& map) override;

 private:
  // The frame of the metadata extension. It goes to no file: all that is seen
  // of it is the metadata digest, in the log.
  struct PackageExtension {
    Le32 extension_type = 15;
    Le32 extension_length = sizeof(PackageExtension);
    Le32 reserved_8;
    std::array<std::uint8_t, 20> reserved_12{};
    std::array<char, 12> name{'T', 'O', 'V', 'A', ' ', 'F', 'W'};
    std::uint8_t kind = 2;
    std::array<std::uint8_t, 3> reserved_45{};
    Le32 metadata_length = sizeof(MetadataExtension<DigestLength>);
    std::array<std::uint8_t, DigestLength> metadata_digest{};
  };
  static_assert(sizeof(PackageExtension) == 52 + DigestLength);

  PackageExtension package_;
  MetadataExtension<DigestLength> metadata_;
};

using Kelp18Image = PaddedImage<kKelp18DigestLength>;
using Kelp25Image = PaddedImage<kKelp25DigestLength>;
using Kelp18FwManifest = MetadataManifest<kKelp18DigestLength>;
using Kelp25FwManifest = MetadataManifest<kKelp25DigestLength>;

extern template class PaddedImage<kKelp18DigestLength>;
extern template class PaddedImage<kKelp25DigestLength>;
extern template class MetadataManifest<kKelp18DigestLength>;
extern template class MetadataManifest<kKelp25DigestLength>;

}  // namespace tova_fw_builder
