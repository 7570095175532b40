// image/kelp30.h
// Generation 3.0: binary header at offset 0, contents at 32768, no digest and
// nothing in the manifest.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "image/image.h"

namespace tova_fw_builder {

class Kelp30Image : public Image {
 public:
  using Image::Image;

  // Writes the header AHEAD of the contents, on purpose, with what it has then.
  void write(std::iostream& stream, const std::string& path,
             std::uint32_t css_header_size) override;
  std::unique_ptr<ImageManifest> create_manifest(
      bool debug, std::uint32_t imr_type) override;

  std::uint64_t image_size = 0;  // length of the binary, set by write(); unread
  std::array<std::uint8_t, 32> image_hash{};  // never filled
};

// Has no content: both manifest files stay empty.
class Kelp30FwManifest : public UnsignedManifest {
 public:
  void write(std::ostream&, const FwOutMap&) override {}
  void write_extended(std::ostream&, const FwOutMap&) override {}
};

}  // namespace tova_fw_builder
