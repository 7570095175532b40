// elf_tables/elf_tables.h
// The section table and the symbol list of an ELF, read from the ELF itself.
#pragma once

#include <memory>
#include <ostream>
#include <string>

namespace tova_fw_builder {

class ElfFile;

// False in a build without libelf, in which opening a file fails.
bool can_read_elfs();

// The builder makes the same image from these two texts as from those that
// `objdump -h` and `nm` of GNU binutils print for the ELF.
class ElfTables {
 public:
  // Opens a file. Throws std::runtime_error with a reason for what can't be
  // read, is no ELF, is an archive or a core dump, or is cut off or damaged so
  // that a table or the bytes of a section reach beyond its end.
  explicit ElfTables(const std::string& path);
  ~ElfTables();

  // The table of sections, by their numbers in the file: those that a linker
  // or a programmer filled, not those that hold names, symbols or relocations.
  // Throws std::runtime_error for a damaged name.
  void write_sections(std::ostream& out) const;

  // The symbols with a name and an address, by their numbers in the file: of
  // symbols of one name the builder takes the last. Throws std::runtime_error
  // for a damaged table.
  void write_symbols(std::ostream& out) const;

 private:
  std::unique_ptr<ElfFile> file_;
};

}  // namespace tova_fw_builder
