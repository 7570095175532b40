// input_map/elf_list.h
// The list of linked ELF files that make up the firmware.
#pragma once

#include <istream>
#include <string>
#include <vector>

namespace tova_fw_builder {

// The three files of one linked ELF, as they stand in the list. None is opened.
struct ElfListEntry {
  std::string elf;     // the linked file, taken as a bag of bytes
  std::string memmap;  // its section table, as of objdump -h
  std::string nm;      // its symbol list, as of nm
};

using ElfList = std::vector<ElfListEntry>;

// Reads the list (docs/file-formats.md, "ELF list"; docs/inputs.md, "The ELF
// list"). A line of blanks is an empty path, an empty file an empty list. Logs
// each line whole at level 3.
//
// Throws std::runtime_error "Invalid number of lines in ELF list. Must be list
// of pairs <elf, memmap, nm>" for a triple that lacks a line or the line feed
// of its third one; "Failed to open file: " and the path.
ElfList read_elf_list(const std::string& path);
ElfList read_elf_list(std::istream& in);

}  // namespace tova_fw_builder
