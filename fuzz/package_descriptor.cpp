// The package descriptor as `asm` reads it, with files "a" and "b" to join.
#include "harness.h"
#include "tools/asm_command.h"

void fuzz_one(const std::string& input) {
  const auto files = cut(input, 3);
  put("a", files[1]);
  put("b", files[2]);
  tova_fw_builder::asm_command(put("package", files[0]), "out");
}
