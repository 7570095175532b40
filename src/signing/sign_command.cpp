// The command `sign`.
#include "signing/sign_command.h"

#include <fstream>
#include <stdexcept>

#include "driver/ground/log.h"
#include "image/image.h"
#include "signing/keys/key_file.h"
#include "signing/sign_manifest.h"

namespace tova_fw_builder {

void sign_command(const std::string& type, const std::string& key_file,
                  const std::string& manifest_file,
                  const std::string& signed_file) {
  const bool debug = type == "debug";
  if (!debug && type != "release") {
    throw std::runtime_error("Invalid sign type");
  }
  const auto manifest = read_manifest(manifest_file);
  const auto key = load_key_file(key_file);
  if (debug) {
    log_info("Debug manifest");
    manifest->set_debug();  // ahead of the hash, which covers the mark
  }
  sign_manifest(*manifest, *key);

  log_info("Writing signed manifest to: ", signed_file);
  std::ofstream out(signed_file, std::ios::binary);
  manifest->write_raw(out);
}

}  // namespace tova_fw_builder
