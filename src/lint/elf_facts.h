// lint/elf_facts.h
// As much of an ELF as tells whether a section table and a symbol list are of
// it: names, addresses, sizes. Read by hand, since lint is there without
// libelf, too, and a damaged ELF is no fault of the definition.
#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace tova_fw_builder {

struct ElfFacts {
  struct Section {
    std::uint32_t address = 0;  // low 32 bits, as of all numbers here
    std::uint32_t offset = 0;
    std::uint32_t size = 0;
  };
  std::uint64_t length = 0;  // of the file
  // Empty for what is no ELF, or a damaged one.
  std::multimap<std::string, Section, std::less<>> sections;
  bool has_symbols = false;
  std::multimap<std::string, std::uint32_t> symbols;  // of those asked for
};

// Throws std::runtime_error "Failed to open file: " and the path.
ElfFacts read_elf_facts(const std::string& path,
                        const std::map<std::string, bool>& wanted_symbols);

}  // namespace tova_fw_builder
