#include "address_lookup/elf_places.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <tuple>

#include "companion/ground/input_file.h"
#include "companion/ground/list_cures.h"
#include "companion/ground/naming.h"
#include "driver/ground/files.h"
#include "driver/ground/paths.h"
#include "input_map/fw_image_map.h"

namespace tova_fw_builder {
namespace {

// Absolute, common, debugging and undefined symbols, and those of sections that
// take no memory, lie at no address.
bool is_placed(char type) { return std::strchr("aACcNnUwv", type) == nullptr; }

bool is_capital(char type) { return type >= 'A' && type <= 'Z'; }

bool comes_before(const ElfSymbol& a, const ElfSymbol& b) {
  return std::tie(a.address, a.is_global, b.name) <
         std::tie(b.address, b.is_global, a.name);
}

std::string found_path(const std::string& path, const std::string& list) {
  // A pipe is there, and has to be opened but once.
  if (is_pipe(path) || try_open_input(path)->is_open()) return path;
  std::string beside =
      path_text(native_path(list).parent_path() / native_path(path));
  if (is_pipe(beside) || try_open_input(beside)->is_open()) return beside;
  std::string text = its_file(path) + " can't be opened";
  if (find_listed_path(list, path).is_cut) {
    text += kCutPathCure;
  } else if (native_path(path).is_relative()) {
    text += kNeitherPlace;
  }
  throw std::runtime_error(text);
}

ElfList entries_of(const std::string& list) {
  try {
    return read_elf_list(list);
  } catch (const std::runtime_error& error) {
    const std::string text = error.what();
    throw std::runtime_error(text.starts_with("Invalid number of lines")
                                 ? text + std::string(kElfListCure)
                                 : why_unreadable(list));
  }
}

}  // namespace

ElfPlaces::ElfPlaces(const std::string& list) {
  for (ElfListEntry elf : entries_of(list)) {
    elf.memmap = found_path(elf.memmap, list);
    const std::size_t first_section = sections_.size();
    naming(elf.memmap, [&] { read_sections(elf); });
    elf.nm = found_path(elf.nm, list);
    read_symbols(elf, first_section);
  }
}

void ElfPlaces::read_sections(const ElfListEntry& elf) {
  FwImageMap one;
  read_section_table(one, *open_input(elf.memmap), nullptr);
  for (const auto& [name, header] : one.sections) {
    if (!header->alloc || header->size == 0) continue;
    const std::uint64_t begin = header->vma;
    sections_.push_back({name, elf.elf, {begin, begin + header->size}, {}});
  }
}

void ElfPlaces::read_symbols(const ElfListEntry& elf,
                             std::size_t first_section) {
  std::vector<ElfSymbol>& symbols = symbols_.emplace_back();
  for_each_symbol(
      *open_input(elf.nm), [&](const FwImageMap::SymbolMap::Entry& entry) {
        if (!is_placed(entry.type)) return;
        const std::size_t length = entry.name.size();
        char* const copy = static_cast<char*>(texts_->allocate(length, 1));
        symbols.push_back({entry.address,
                           is_capital(entry.type),
                           {copy, entry.name.copy(copy, length)}});
      });
  std::ranges::sort(symbols, comes_before);
  for (std::size_t i = first_section; i < sections_.size(); ++i) {
    const auto place = [&](std::uint64_t address) {
      return std::ranges::lower_bound(symbols, address, {},
                                      &ElfSymbol::address);
    };
    ElfSection& section = sections_[i];
    section.symbols = {place(section.range.begin), place(section.range.end)};
  }
}

const ElfSymbol* ElfPlaces::symbol_at(const ElfSection& section,
                                      std::uint32_t address) {
  const auto behind = std::ranges::upper_bound(section.symbols, address, {},
                                               &ElfSymbol::address);
  return behind == section.symbols.begin() ? nullptr : &*(behind - 1);
}

}  // namespace tova_fw_builder
