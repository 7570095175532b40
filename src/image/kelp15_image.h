// image/kelp15_image.h
// Generation 1.5: the binary holds module contents alone, addon modules stand
// in files of their own, and the loader's header is in the manifest.
#pragma once

#include "image/image.h"

namespace tova_fw_builder {

class Kelp15Image : public Image {
 public:
  using Image::Image;

  // `css_header_size` is not used.
  void write(std::iostream& stream, const std::string& path,
             std::uint32_t css_header_size) override;
  // `imr_type` is not used.
  std::unique_ptr<ImageManifest> create_manifest(
      bool debug, std::uint32_t imr_type) override;
};

}  // namespace tova_fw_builder
