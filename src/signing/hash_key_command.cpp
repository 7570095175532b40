// The command `hash_key`.
#include <stdexcept>

#include "signing/commands.h"
#include "signing/keys/key_file.h"
#include "signing/keys/public_key_hash.h"

namespace tova_fw_builder {

void hash_key_command(const std::string& kind, const std::string& key_file) {
  // The form is told by the file itself: either word takes either form.
  if (kind != "pair" && kind != "pub") {
    throw std::runtime_error("Invalid key file type specified");
  }
  public_key_hash(*load_key_file(key_file));
}

}  // namespace tova_fw_builder
