// The symbol list. The order is that of the file: nm sorts by name and leaves
// those of one name in this order, of which the builder takes the last.
#include <string_view>

#include "companion/ground/message_text.h"
#include "elf_tables/elf_file.h"
#include "elf_tables/elf_tables.h"
#include "elf_tables/lines.h"
#include "elf_tables/section_kind.h"
#include "elf_tables/special_symbols.h"

namespace tova_fw_builder {
namespace {

// The symbol table, and beside it the section numbers that 16 bits can't hold.
struct SymbolTable {
  std::size_t strings = 0;
  std::size_t count = 0;
  Elf_Data* symbols = nullptr;
  Elf_Data* numbers = nullptr;  // null if all numbers fit
};

Elf_Data* data_of(const ElfFile& elf, std::size_t section) {
  Elf_Data* const data = elf_getdata(elf_getscn(elf.get(), section), nullptr);
  if (data == nullptr) throw elf_error("its symbol table can't be read");
  return data;
}

SymbolTable find_table(const ElfFile& elf) {
  SymbolTable table;
  std::size_t place = 0;
  const auto& sections = elf.sections();
  for (std::size_t i = 0; i < sections.size() && place == 0; ++i) {
    if (sections[i].sh_type == SHT_SYMTAB) place = i;
  }
  if (place == 0) return table;
  table.strings = sections[place].sh_link;
  table.symbols = data_of(elf, place);
  table.count =
      table.symbols->d_size / gelf_fsize(elf.get(), ELF_T_SYM, 1, EV_CURRENT);
  for (std::size_t i = 0; i < sections.size(); ++i) {
    if (sections[i].sh_type == SHT_SYMTAB_SHNDX &&
        sections[i].sh_link == place) {
      table.numbers = data_of(elf, i);
    }
  }
  return table;
}

struct Symbol {
  GElf_Sym entry = {};
  const GElf_Shdr* section = nullptr;  // null for one that is in none

  int type() const { return GELF_ST_TYPE(entry.st_info); }
  int binding() const { return GELF_ST_BIND(entry.st_info); }
};

Symbol symbol_at(const ElfFile& elf, const SymbolTable& table,
                 std::size_t index) {
  Symbol symbol;
  Elf32_Word number = 0;
  if (gelf_getsymshndx(table.symbols, table.numbers, static_cast<int>(index),
                       &symbol.entry, &number) == nullptr) {
    throw elf_error("its symbol table can't be read");
  }
  const auto narrow = symbol.entry.st_shndx;
  if (narrow != SHN_XINDEX) {
    if (narrow >= SHN_LORESERVE) return symbol;
    number = narrow;
  }
  if (number != 0 && number < elf.sections().size()) {
    symbol.section = &elf.sections()[number];
  }
  return symbol;
}

char section_letter(const GElf_Shdr& section) {
  const SectionKind kind = kind_of(section);
  if (!kind.alloc) return 'n';
  if (kind.code) return 't';
  if (!kind.contents) return 'b';
  return kind.readonly ? 'r' : 'd';
}

// As nm marks it; in upper case what other files see.
char letter_of(const Symbol& symbol) {
  if (symbol.entry.st_shndx == SHN_COMMON) return 'C';
  if (symbol.type() == STT_GNU_IFUNC) return 'i';
  if (symbol.binding() == STB_WEAK) {
    return symbol.type() == STT_OBJECT ? 'V' : 'W';
  }
  if (symbol.binding() == STB_GNU_UNIQUE) return 'u';
  const char letter =
      symbol.section == nullptr ? 'a' : section_letter(*symbol.section);
  return symbol.binding() == STB_LOCAL ? letter
                                       : static_cast<char>(letter - 'a' + 'A');
}

std::uint64_t address_of(const ElfFile& elf, const Symbol& symbol) {
  // It has no place yet.
  if (symbol.entry.st_shndx == SHN_COMMON) return symbol.entry.st_size;
  std::uint64_t address = symbol.entry.st_value;
  if (elf.header().e_type == ET_REL && symbol.section != nullptr) {
    address += symbol.section->sh_addr;
  }
  return shown_address(elf.header(), symbol.type(), address);
}

}  // namespace

void ElfTables::write_symbols(std::ostream& out) const {
  const ElfFile& elf = *file_;
  const SymbolTable table = find_table(elf);
  for (std::size_t i = 1; i < table.count; ++i) {
    const Symbol symbol = symbol_at(elf, table, i);
    if (symbol.entry.st_shndx == SHN_UNDEF || symbol.type() == STT_SECTION ||
        symbol.type() == STT_FILE) {
      continue;
    }
    const std::string_view name = elf.name(table.strings, symbol.entry.st_name);
    if (name.empty() || is_special(elf.header().e_machine, name)) continue;
    out << eight_digits(address_of(elf, symbol)) << ' ' << letter_of(symbol)
        << ' ' << name_in_line(name) << '\n';
  }
}

}  // namespace tova_fw_builder
