// elf_tables/elf_file.h
// An ELF as libelf reads it. For the sources of this room alone.
#pragma once

#include <gelf.h>

#include <cstdint>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace tova_fw_builder {

// What libelf says of its last failure, behind `what`.
std::runtime_error elf_error(const std::string& what);

// Open as long as it lives. Of contents only what is asked for is read.
class ElfFile {
 public:
  // Throws std::runtime_error for what is no linked ELF: see ElfTables.
  explicit ElfFile(const std::string& path);

  Elf* get() const { return elf_.get(); }
  const GElf_Ehdr& header() const { return header_; }
  std::uint64_t length() const { return length_; }

  // By their numbers in the file; the first one is none.
  const std::vector<GElf_Shdr>& sections() const { return sections_; }
  // The bytes of the name up to its NUL; they live as long as the file is open.
  // Throws std::runtime_error if the name lies in no section.
  std::string_view name(std::size_t strings, std::size_t offset) const;

 private:
  void read_sections();

  std::uint64_t length_ = 0;
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_;
  std::unique_ptr<Elf, int (*)(Elf*)> elf_;
  GElf_Ehdr header_ = {};
  std::vector<GElf_Shdr> sections_;
};

}  // namespace tova_fw_builder
