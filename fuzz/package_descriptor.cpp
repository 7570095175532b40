// The package descriptor as `asm` reads it, with files "a" and "b" to join.
#include <fstream>
#include <sstream>

#include "harness.h"
#include "tools/commands.h"

void fuzz_one(const std::string& input) {
  const auto files = cut(input, 3);
  put("a", files[1]);
  put("b", files[2]);
  std::istringstream package(files[0]);
  std::ofstream out("out", std::ios_base::binary);
  tova_fw_builder::append_files(package, out);
}
