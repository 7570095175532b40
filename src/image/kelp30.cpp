// Generation 3.0. The order of header and contents must stay as it is: the
// header shows the state of the map before anything was written.
#include "image/kelp30.h"

#include "driver/ground/files.h"
#include "driver/ground/log.h"
#include "image/binary_header.h"
#include "image/records/binary_header.h"
#include "layout/content_writer.h"

namespace tova_fw_builder {

void Kelp30Image::write(std::iostream& stream, const std::string& path,
                        std::uint32_t /*css_header_size*/) {
  log_detail("kELP3.0: Writing TovaFwBinaryHeader");
  stream.seekp(0);
  // Image end, offsets and hashes are still zero: so every image has 8 pages,
  // every loaded segment stands at 32768, and no module has a hash.
  write_binary_header(map(), stream, kContentsOffset);
  stream.seekp(kContentsOffset);
  log_detail("kELP3.0: Writing content");
  write_module_contents(map(), stream, path);
  stream.flush();
  // No digest is taken; the line stays for those who compare logs.
  log_detail("kELP3.0: Update image hash");
  stream.seekp(0, std::ios_base::end);
  image_size = position_of(stream);
}

std::unique_ptr<ImageManifest> Kelp30Image::create_manifest(
    bool debug, std::uint32_t /*imr_type*/) {
  auto manifest = std::make_unique<Kelp30FwManifest>();
  manifest->debug = debug;
  manifest->module_type = Kelp30FwManifest::kModuleType;
  return manifest;
}

}  // namespace tova_fw_builder
