// Manifest read-back with all of verification behind it.
#include <functional>

#include "harness.h"
#include "signing/commands.h"

void fuzz_one(const std::string& input) {
  std::string manifest = input;
  // An even modulus takes many times as long as an odd one, and no key has it:
  // one input of sixteen may keep it.
  if (input.size() > 128 && std::hash<std::string>{}(input) % 16 != 0) {
    manifest[128] |= 1;
  }
  tova_fw_builder::verify_command(put("manifest", manifest));
}
