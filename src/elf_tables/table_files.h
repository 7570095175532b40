// elf_tables/table_files.h
// The files that the builder reads about linked ELFs.
#pragma once

#include <string>
#include <vector>

namespace tova_fw_builder {

// Absolute paths, since the builder looks for relative ones from the folder of
// its definition.
struct TableFiles {
  std::string elf;
  std::string sections;
  std::string symbols;
};

// What to call the tables of each ELF: FOLDER/NAME.sections and .symbols, with
// the name that stands at the ELF's place in `names`, else that of the file
// without its last extension. Where two ELFs have one name, the later one gets
// "-2" behind it, and so on.
//
// Throws std::runtime_error for a name that is given twice or is none, for a
// path with white space, which ends a path in an ELF list, and for an output,
// `list` among them, that is one of the ELFs or another output.
std::vector<TableFiles> name_table_files(const std::vector<std::string>& elfs,
                                         const std::vector<std::string>& names,
                                         const std::string& folder,
                                         const std::string& list);

// Writes both tables of an ELF, each whole or not at all. Throws
// std::runtime_error with the reason; an output's name stands ahead of it.
void write_table_files(const TableFiles& files);

// The text of the ELF list of them.
std::string elf_list_text(const std::vector<TableFiles>& files);

}  // namespace tova_fw_builder
