// The reader of the ELF list.
#include "input_map/elf_list.h"

#include <sstream>

#include "harness.h"

void fuzz_one(const std::string& input) {
  std::istringstream list(input);
  tova_fw_builder::read_elf_list(list);
}
