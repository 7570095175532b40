// input_map/elf_list.h
// The list of linked ELF files that make up the firmware.
#pragma once

#include <string>
#include <vector>

namespace tova_fw_builder {

// The three files of one linked ELF. Paths are used as they stand, relative
// ones from the working directory. None of them is opened here.
struct ElfListEntry {
  std::string elf;     // the linked file, taken as a bag of bytes
  std::string memmap;  // its section table, as of objdump -h
  std::string nm;      // its symbol list, as of nm
};

using ElfList = std::vector<ElfListEntry>;

// Reads the list: three lines for each ELF, in the order elf, memmap, nm. Of
// each line the first word counts, so a path can't hold a blank; a line of
// blanks is an empty path. An empty file is an empty list.
//
// Every line must end in a line feed, the last one too, and none may follow
// the last triple. Throws std::runtime_error "Invalid number of lines in ELF
// list. Must be list of pairs <elf, memmap, nm>"; "Failed to open file: " and
// the path. At level 3 logs each line whole, as read.
ElfList read_elf_list(const std::string& path);

}  // namespace tova_fw_builder
