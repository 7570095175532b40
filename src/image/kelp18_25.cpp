// Generations 1.8 and 2.5. The header needs the hashes and offsets that only
// writing the contents gives, yet stands ahead of them: hence the seek back,
// and a digest that has to read the file once more.
#include "image/kelp18_25.h"

#include <span>

#include "driver/ground/byte_dump.h"
#include "driver/ground/files.h"
#include "driver/ground/log.h"
#include "image/binary_header.h"
#include "image/extended_manifest.h"
#include "layout/content_writer.h"

namespace tova_fw_builder {

namespace {

template <typename Facts>
using Digest = std::array<std::uint8_t, Facts::kDigestLength>;

template <typename Facts>
using Metadata = MetadataExtension<Facts::kDigestLength>;

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

// The binary counts as one message for the hash.
template <typename Facts>
Digest<Facts> digest_of(std::istream& in, std::uint64_t length) {
  typename Facts::Hash hash;
  const std::uint64_t taken = Facts::Hash::taken_at_once(length);
  read_in_pieces(in, taken, [&hash](std::span<const std::uint8_t> bytes) {
    hash.update(bytes.data(), bytes.size());
  });
  Digest<Facts> digest;
  hash.final(digest.data());
  return digest;
}

template <typename Facts>
Digest<Facts> digest_of(const Metadata<Facts>& metadata) {
  typename Facts::Hash hash(reinterpret_cast<const std::uint8_t*>(&metadata),
                            sizeof(metadata));
  Digest<Facts> digest;
  hash.final(digest.data());
  return digest;
}

void log_digest(const char* label, std::span<const std::uint8_t> digest) {
  log_info(
      ByteDump{.data = digest.data(), .length = digest.size(), .label = label});
}

template <typename Facts>
void log_metadata(const Metadata<Facts>& metadata) {
  if (log_level() < kLogInfo) return;
  LogLine line(kLogInfo);
  line.stream() << "  TOVA metadata file extension\n"
                << std::hex << "    extension_type    "
                << metadata.extension_type << "\n    extension_length  "
                << metadata.extension_length << "\n    tova_imr_type           "
                << metadata.tova_imr_type << "\n    tova_info.version       "
                << metadata.version << "\n    tova_info.base_offset   "
                << metadata.base_offset << "\n    tova_info.limit_offset  "
                << metadata.limit_offset;
}

}  // namespace

template <typename Facts>
void PaddedImage<Facts>::write(std::iostream& stream, const std::string& path,
                               std::uint32_t css_header_size) {
  const auto log_step = [](const char* step) {
    log_detail(Facts::kLogPrefix, step);
  };
  const std::uint32_t pad = kContentsOffset - css_header_size;
  log_detail(Facts::kLogPrefix, "Writing initial padding (size 0x", std::hex,
             pad, ')');
  write_padding(stream, pad);
  log_step("Writing content");
  write_module_contents(map(), stream, path);
  log_step("Writing TovaFwBinaryHeader");
  stream.seekp(std::streamoff{kSignedHeaderOffset - css_header_size});
  write_binary_header(map(), stream, css_header_size);
  stream.flush();
  log_step("Update image hash");
  stream.seekp(0, std::ios_base::end);
  image_size = static_cast<std::uint64_t>(std::streamoff{stream.tellp()});
  stream.seekg(0);
  image_hash = digest_of<Facts>(stream, image_size);
}

template <typename Facts>
std::unique_ptr<ImageManifest> PaddedImage<Facts>::create_manifest(
    bool debug, std::uint32_t imr_type) {
  return std::make_unique<MetadataManifest<Facts>>(*this, debug, imr_type);
}

template <typename Facts>
MetadataManifest<Facts>::MetadataManifest(const PaddedImage<Facts>& image,
                                          bool debug_flag,
                                          std::uint32_t imr_type) {
  debug = debug_flag;
  module_type = kModuleType;
  metadata_.tova_imr_type = imr_type;
  metadata_.limit_offset =
      static_cast<std::uint32_t>(image.image_size) + metadata_.base_offset;
  log_digest("Image hash", image.image_hash);
  metadata_.image_digest = image.image_hash;
  package_.metadata_digest = digest_of<Facts>(metadata_);
  log_digest("Metadata hash", package_.metadata_digest);
}

template <typename Facts>
void MetadataManifest<Facts>::write(std::ostream& stream, Image& /*image*/) {
  log_metadata<Facts>(metadata_);
  write_record(stream, metadata_);
}

template <typename Facts>
void MetadataManifest<Facts>::write_extended(std::ostream& stream,
                                             Image& image) {
  log_info("Create extended manifest");
  write_extended_manifest(image.map(), stream);
}

template class PaddedImage<Kelp18Facts>;
template class PaddedImage<Kelp25Facts>;
template class MetadataManifest<Kelp18Facts>;
template class MetadataManifest<Kelp25Facts>;

}  // namespace tova_fw_builder
