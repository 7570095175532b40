// address_lookup/elf_places.h
// The sections and symbols of the linked ELFs, by address.
#pragma once

#include <cstdint>
#include <memory>
#include <memory_resource>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "address_lookup/range_index.h"
#include "input_map/elf_list.h"

namespace tova_fw_builder {

struct ElfSymbol {
  std::uint32_t address = 0;
  bool is_global = false;
  std::string_view name;
};

struct ElfSection {
  std::string name;
  std::string elf;
  AddressRange range;
  std::span<const ElfSymbol> symbols;  // of its ELF and in its range, in order
};

class ElfPlaces {
 public:
  ElfPlaces() = default;

  // Reads what an ELF list names, from here or else from the list's folder.
  // Throws what the builder's readers do.
  explicit ElfPlaces(const std::string& list);

  // Those that take room in memory.
  const std::vector<ElfSection>& sections() const { return sections_; }

  // The last symbol of the section up to the address; of those at one address
  // a global one, and the first by name. Null if there is none.
  static const ElfSymbol* symbol_at(const ElfSection& section,
                                    std::uint32_t address);

 private:
  void read_sections(const ElfListEntry& elf);
  void read_symbols(const ElfListEntry& elf, std::size_t first_section);

  std::vector<ElfSection> sections_;
  std::vector<std::vector<ElfSymbol>> symbols_;  // of each ELF, by address
  std::unique_ptr<std::pmr::monotonic_buffer_resource> texts_ =
      std::make_unique<std::pmr::monotonic_buffer_resource>();
};

}  // namespace tova_fw_builder
