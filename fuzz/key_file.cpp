// The reader of key files, and the hash of what it reads.
#include "harness.h"
#include "signing/commands.h"

void fuzz_one(const std::string& input) {
  tova_fw_builder::hash_key_command("pair", put("key", input));
}
