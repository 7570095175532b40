// Generations 1.8 and 2.5. The header needs the hashes and offsets that only
// writing the contents gives, yet stands ahead of them: hence the seek back,
// and a digest that has to read the file once more.
#include "image/kelp18_25.h"

#include "crypto/sha_hash.h"
#include "driver/ground/byte_dump.h"
#include "driver/ground/files.h"
#include "driver/ground/log.h"
#include "driver/ground/stream_digest.h"
#include "image/binary_header.h"
#include "layout/content_writer.h"

namespace tova_fw_builder {

namespace {

// The table of differences.
template <std::size_t DigestLength>
struct Generation;
template <>
struct Generation<kKelp18DigestLength> {
  using Hash = Sha256Hash;
  static constexpr const char* kLogPrefix = "kELP1.8: ";
};
template <>
struct Generation<kKelp25DigestLength> {
  using Hash = Sha384Hash;
  static constexpr const char* kLogPrefix = "kELP2.5: ";
};

// Fills a fresh file with zero bytes. A pad that wrapped is near 4 GiB and is
// left as a hole, but for its last byte, which gives the file its length.
void write_padding(std::ostream& stream, std::uint32_t pad) {
  if (pad <= kContentsOffset) {
    write_zeros(stream, pad);
  } else {
    stream.seekp(std::streamoff{pad} - 1);
    stream.put('\0');
  }
}

}  // namespace

template <std::size_t DigestLength>
void PaddedImage<DigestLength>::write(std::iostream& stream,
                                      const std::string& path,
                                      std::uint32_t css_header_size) {
  const char* const prefix = Generation<DigestLength>::kLogPrefix;
  const std::uint32_t pad = kContentsOffset - css_header_size;
  log_detail(prefix, "Writing initial padding (size 0x", std::hex, pad, ')');
  write_padding(stream, pad);
  log_detail(prefix, "Writing content");
  write_module_contents(map(), stream, path);
  log_detail(prefix, "Writing TovaFwBinaryHeader");
  // In 32 bits: more than 8192 bytes of CSS wrap to a place near 4 GiB.
  stream.seekp(std::streamoff{kSignedHeaderOffset - css_header_size});
  write_binary_header(map(), stream, css_header_size);
  stream.flush();
  log_detail(prefix, "Update image hash");
  stream.seekp(0, std::ios_base::end);
  image_size = position_of(stream);
  // The file as it stands, zeros and header included, without the CSS part.
  stream.seekg(0);
  image_hash = stream_digest<typename Generation<DigestLength>::Hash>(
      stream, image_size);
}

template <std::size_t DigestLength>
std::unique_ptr<ImageManifest> PaddedImage<DigestLength>::create_manifest(
    bool debug, std::uint32_t imr_type) {
  return std::make_unique<MetadataManifest<DigestLength>>(*this, debug,
                                                          imr_type);
}

template <std::size_t DigestLength>
MetadataManifest<DigestLength>::MetadataManifest(
    const PaddedImage<DigestLength>& image, bool debug_flag,
    std::uint32_t imr_type) {
  debug = debug_flag;
  module_type = kModuleType;
  metadata_.tova_imr_type = imr_type;
  metadata_.limit_offset =
      static_cast<std::uint32_t>(image.image_size) + metadata_.base_offset;
  log_info(ByteDump{image.image_hash.data(), DigestLength, "Image hash"});
  metadata_.image_digest = image.image_hash;
  // The package extension is never written: the digest in it is logged, and
  // that is all that shows of it.
  typename Generation<DigestLength>::Hash hash(
      reinterpret_cast<const std::uint8_t*>(&metadata_), sizeof(metadata_));
  hash.final(package_.metadata_digest.data());
  log_info(
      ByteDump{package_.metadata_digest.data(), DigestLength, "Metadata hash"});
}

template <std::size_t DigestLength>
void MetadataManifest<DigestLength>::write(std::ostream& stream,
                                           const FwOutMap& /*map*/) {
  log_info("  TOVA metadata file extension\n", std::hex,
           "    extension_type    ", metadata_.extension_type,
           "\n    extension_length  ", metadata_.extension_length,
           "\n    tova_imr_type           ", metadata_.tova_imr_type,
           "\n    tova_info.version       ", metadata_.version,
           "\n    tova_info.base_offset   ", metadata_.base_offset,
           "\n    tova_info.limit_offset  ", metadata_.limit_offset);
  write_record(stream, metadata_);
}

template class PaddedImage<kKelp18DigestLength>;
template class PaddedImage<kKelp25DigestLength>;
template class MetadataManifest<kKelp18DigestLength>;
template class MetadataManifest<kKelp25DigestLength>;

}  // namespace tova_fw_builder
