// The command `verify`.
#include "signing/verify_command.h"

#include "image/image.h"
#include "signing/verify_manifest.h"

namespace tova_fw_builder {

void verify_command(const std::string& bin_file) {
  verify_manifest(*read_manifest(bin_file));
}

}  // namespace tova_fw_builder
