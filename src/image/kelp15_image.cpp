// Generation 1.5. There is nothing around the contents of the binary.
#include "image/kelp15_image.h"

#include "image/kelp15_manifest.h"
#include "layout/content_writer.h"

namespace tova_fw_builder {

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

}  // namespace tova_fw_builder
