// elf_tables/load_address.h
#pragma once

#include <vector>

#include "elf_tables/elf_file.h"

namespace tova_fw_builder {

// The load addresses of an ELF's sections, by its program headers.
class LoadAddresses {
 public:
  // Throws std::runtime_error if the program headers can't be read.
  explicit LoadAddresses(const ElfFile& elf);

  // The load address of a section: its run address, moved as the segment is
  // that it lies in.
  std::uint64_t of(const GElf_Shdr& section) const;

 private:
  std::vector<GElf_Phdr> segments_;
};

}  // namespace tova_fw_builder
