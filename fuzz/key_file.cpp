// The reader of key files, and the hash of what it reads.
#include "harness.h"
#include "signing/hash_key_command.h"

void fuzz_one(const std::string& input) {
  tova_fw_builder::hash_key_command("pair", put("key", input));
}
