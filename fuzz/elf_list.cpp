// The reader of the ELF list.
#include "input_map/elf_list.h"

#include "harness.h"

void fuzz_one(const std::string& input) {
  tova_fw_builder::read_elf_list(put("elf.list", input));
}
