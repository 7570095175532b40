// Tables: whether those of the image have room, and whether those of the linker
// are of their ELFs.
#include <algorithm>

#include "companion/ground/message_text.h"
#include "driver/ground/files.h"
#include "image/binary_header.h"
#include "image/records/binary_header.h"
#include "image/records/css_part.h"
#include "input_map/fw_image_map.h"
#include "lint/elf_facts.h"
#include "lint/rule_functions.h"

namespace tova_fw_builder {

namespace {

std::uint64_t symbol_table_size(const FwOutMap& map) {
  std::uint64_t size = 8;  // count of symbols, length of names
  for (const auto& symbol : map.exported_symbols) {
    size += sizeof(SymbolRecord) + symbol.name.size() + 1;
  }
  return size;
}

void check_sections(const LinkedElf& elf, const ElfFacts& file, Findings& out) {
  const bool has_memory = std::ranges::any_of(
      file.sections, [](const auto& entry) { return entry.second.address; });
  if (elf.sections.empty() && has_memory) {
    out.add(elf.spots[1],
            "the section table has no section, though its ELF has some: is it "
            "what objdump -h prints?");
  }
  for (const LinkedHeader& header : elf.sections) {
    const std::string name = in_quotes(header->name);
    if (header->contents &&
        std::uint64_t{header->file_offset} + header->size > file.length) {
      out.add(elf.spots[1], "the section table isn't of this ELF: " + name +
                                " ends behind the file's end");
      return;
    }
    if (!header->alloc || file.sections.empty()) continue;
    const auto [first, last] = file.sections.equal_range(header->name);
    const bool is_there = std::any_of(first, last, [&](const auto& entry) {
      const ElfFacts::Section& section = entry.second;
      return section.address == header->vma && section.size == header->size &&
             (!header->contents || section.offset == header->file_offset);
    });
    if (is_there) continue;
    out.add(elf.spots[1],
            "the section table isn't of this ELF: there, " + name +
                (first == last ? " is missing"
                               : " has another address, size or offset"));
    return;
  }
}

// Only exports look at the list.
void check_symbols(const LinkedElf& elf, const ElfFacts& file,
                   const FwOutMap& map, Findings& out) {
  if (!file.has_symbols || map.exports.empty()) return;
  std::string wrong;
  for_each_symbol(*open_input(elf.files.nm), [&](const auto& symbol) {
    const std::string name(symbol.name);
    if (!wrong.empty() || !map.exports.contains(name)) return;
    const auto [first, last] = file.symbols.equal_range(name);
    const bool is_there = std::any_of(first, last, [&](const auto& entry) {
      return entry.second == symbol.address;
    });
    if (is_there) return;
    wrong = in_quotes(name) +
            (first == last ? " is missing" : " has another address");
  });
  if (wrong.empty()) return;
  out.add(elf.spots[2], "the symbol list isn't of this ELF: there, " + wrong);
}

}  // namespace

void find_full_tables(const Linked& linked, Findings& out) {
  const FwOutMap& map = *linked.definition->map;
  if (linked.refusal) return;
  std::uint64_t size = manifest_size(map);
  std::uint64_t room = kContentsOffset;
  if (map.binary_ver == kKelp15) {
    // What sign keeps is the length that the manifest records, whole pages.
    size += sizeof(CssPart);
    room = size + (kPageSize - size % kPageSize);
  } else if (map.binary_ver != kKelp30) {
    room -= kSignedHeaderOffset;
  }
  size += symbol_table_size(map);
  if (size <= room) return;
  // The statement is there, or the map would be refused.
  for (const LintStatement& statement : linked.definition->statements) {
    if (statement.key() != "binary_ver") continue;
    out.add(statement.spot(),
            "header, " + counted(map.modules.size(), "module") + ", " +
                counted(map.mod_cfg_total, "configuration") + " and " +
                counted(map.exported_symbols.size(), "exported symbol") +
                " take " + std::to_string(size) + " of " +
                std::to_string(room) + " bytes: " +
                (map.binary_ver == kKelp15
                     ? "sign cuts the symbol table"
                     : "they and the contents overwrite each other"));
    return;
  }
}

void find_stale_tables(const Linked& linked, Findings& out) {
  const FwOutMap& map = *linked.definition->map;
  for (const LinkedElf& elf : linked.elfs) {
    const ElfFacts file = read_elf_facts(elf.files.elf, map.exports);
    check_sections(elf, file, out);
    check_symbols(elf, file, map, out);
  }
}

}  // namespace tova_fw_builder
