// Manifest read-back with all of verification behind it.
#include "harness.h"
#include "signing/verify_command.h"

void fuzz_one(const std::string& input) {
  tova_fw_builder::verify_command(put("manifest", input));
}
