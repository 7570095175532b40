// The section table. Easily misread: a blank in a section's name is a blank in
// the line, as objdump prints it, and the builder then takes the name up to it
// and refuses the line.
#include <algorithm>
#include <bit>
#include <string>
#include <string_view>

#include "companion/ground/message_text.h"
#include "elf_tables/elf_file.h"
#include "elf_tables/elf_tables.h"
#include "elf_tables/lines.h"
#include "elf_tables/load_address.h"
#include "elf_tables/section_kind.h"

namespace tova_fw_builder {
namespace {

bool is_relocation(const GElf_Shdr& section) {
  return section.sh_type == SHT_REL || section.sh_type == SHT_RELA;
}

// Relocations for the linker, by the symbol table and for one section; the
// loader's own are contents.
bool is_for_linker(const ElfFile& elf, const GElf_Shdr& section) {
  const auto& all = elf.sections();
  const bool is_loaded =
      elf.header().e_type != ET_REL && (section.sh_flags & SHF_ALLOC) != 0;
  return !is_loaded && section.sh_link < all.size() &&
         all[section.sh_link].sh_type == SHT_SYMTAB && section.sh_info != 0 &&
         section.sh_info < all.size() && !is_relocation(all[section.sh_info]);
}

// The tables that hold names of sections and of symbols, and nothing else.
struct NameTables {
  std::size_t sections = 0;
  std::size_t symbols = 0;
};

NameTables name_tables(const ElfFile& elf) {
  NameTables tables;
  if (elf_getshdrstrndx(elf.get(), &tables.sections) != 0) {
    throw elf_error("its section names can't be found");
  }
  const auto symbols =
      std::ranges::find(elf.sections(), SHT_SYMTAB, &GElf_Shdr::sh_type);
  if (symbols != elf.sections().end()) tables.symbols = symbols->sh_link;
  return tables;
}

bool is_listed(const ElfFile& elf, const NameTables& names,
               std::size_t number) {
  const GElf_Shdr& section = elf.sections()[number];
  switch (section.sh_type) {
    case SHT_NULL:
    case SHT_SYMTAB_SHNDX:
      return false;
    case SHT_SYMTAB:  // a shared object may carry it in memory
      return elf.header().e_type == ET_DYN && (section.sh_flags & SHF_ALLOC);
    case SHT_STRTAB:
      return number != names.sections && number != names.symbols;
    case SHT_REL:
    case SHT_RELA:
      return !is_for_linker(elf, section);
    default:
      return true;
  }
}

// The power of two, rounded up.
int alignment_power(const GElf_Shdr& section) {
  return section.sh_addralign < 2
             ? 0
             : static_cast<int>(std::bit_width(section.sh_addralign - 1));
}

// As objdump prints it: a control character as '^' and the one 64 above it.
std::string shown_name(std::string_view name) {
  std::string shown;
  for (const char c : name) {
    const bool is_control = static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
    if (is_control) shown += '^';
    shown += is_control ? static_cast<char>(c + 0x40) : c;
  }
  return shown;
}

void write_flags(std::ostream& out, const SectionKind& kind) {
  struct Word {
    bool is_set;
    const char* text;
  };
  const Word words[] = {
      {kind.contents, "CONTENTS"}, {kind.alloc, "ALLOC"}, {kind.load, "LOAD"},
      {kind.readonly, "READONLY"}, {kind.code, "CODE"},   {kind.data, "DATA"},
  };
  const char* between = "                  ";
  for (const Word& word : words) {
    if (!word.is_set) continue;
    out << between << word.text;
    between = ", ";
  }
  out << '\n';
}

}  // namespace

void ElfTables::write_sections(std::ostream& out) const {
  const LoadAddresses load_addresses(*file_);
  const NameTables names = name_tables(*file_);
  out << "Sections:\n"
         "Idx Name          Size      VMA       LMA       File off  Algn\n";
  std::size_t index = 0;
  for (std::size_t i = 0; i < file_->sections().size(); ++i) {
    if (!is_listed(*file_, names, i)) continue;
    const GElf_Shdr& section = file_->sections()[i];
    out << padded(std::to_string(index++), -3) << ' '
        << padded(shown_name(name_in_line(
                      file_->name(names.sections, section.sh_name))),
                  13);
    for (const std::uint64_t number :
         {section.sh_size, section.sh_addr, load_addresses.of(section),
          section.sh_offset}) {
      out << ' ' << eight_digits(number) << ' ';
    }
    out << " 2**" << alignment_power(section) << '\n';
    write_flags(out, kind_of(section));
  }
}

}  // namespace tova_fw_builder
