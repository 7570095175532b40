// Sections, exports and tables against what the linker produced.
#include <algorithm>
#include <unordered_set>

#include "companion/ground/message_text.h"
#include "companion/ground/nearest.h"
#include "driver/ground/files.h"
#include "image/records/binary_header.h"
#include "image/records/css_part.h"
#include "input_map/fw_image_map.h"
#include "lint/elf_facts.h"
#include "lint/rules.h"
#include "lint/statement_forms.h"
#include "memory_map/address_coverage.h"

namespace tova_fw_builder {

namespace {

// Comparing each missing name with each of a hundred thousand takes its time.
constexpr std::size_t kMaxQuestions = 20;

class SectionNames {
 public:
  explicit SectionNames(const FwImageMap& map) : map_(map) {}

  std::string question(std::string_view name) {
    if (++asked_ > kMaxQuestions) return "";
    Nearest near(name);
    for (const auto& [known, header] : map_.sections) near.offer(known);
    return near.question();
  }

 private:
  const FwImageMap& map_;
  std::size_t asked_ = 0;
};

std::string symbol_question(const FwImageMap& map, std::string_view name) {
  Nearest near(name);
  for (const FwImageMap::SymbolMap& symbols : map.symbols) {
    for (const auto& symbol : symbols.entries) near.offer(symbol.name);
  }
  return near.question();
}

// An optional module may be absent as a whole.
bool is_absent(const LinkedModule& module) {
  if (module.is_required) return false;
  for (const LinkedGroup& group : module.groups) {
    for (const LinkedSection& section : group.sections) {
      if (section.header && !section.is_optional) return false;
    }
  }
  return true;
}

std::string size_text(const FwImageMap::SectionHeader& header) {
  return counted(header.size, "byte") + " at " + hex_number(header.vma);
}

void find_missing_ignored(const Linked& linked, SectionNames& names,
                          Findings& out) {
  for (const LintStatement& statement : linked.definition->statements) {
    if (statement.key() != "ignore") continue;
    const auto name = name_of(statement, BlockKind::kImage);
    if (linked.image_map.sections.contains(std::string(name))) continue;
    out.add(statement.words.back().spot,
            "no section table has " + in_quotes(name) + names.question(name))
        .level = Level::kWarning;
  }
}

}  // namespace

void find_missing_sections(const Linked& linked, Findings& out) {
  SectionNames names(linked.image_map);
  const auto check = [&](const LinkedSection& section) {
    if (!section.header && !section.is_optional) {
      out.add(section.spot, "no section table has " + in_quotes(section.name) +
                                names.question(section.name));
    }
    if (section.replacement.empty() || section.replaced_by) return;
    out.add(section.statement->words.back().spot,
            "no section table has the replacement " +
                in_quotes(section.replacement) +
                names.question(section.replacement));
  };
  for (const LinkedModule& module : linked.modules) {
    if (is_absent(module)) continue;
    for (const LinkedGroup& group : module.groups) {
      std::ranges::for_each(group.sections, check);
    }
  }
  std::ranges::for_each(linked.dyn_mem, check);
  find_missing_ignored(linked, names, out);
}

void find_left_out_sections(const Linked& linked, Findings& out) {
  std::unordered_set<std::string_view> taken;
  for_each_section(linked, [&](const LinkedModule&, const LinkedGroup&,
                               const LinkedSection& section) {
    taken.insert(section.name);
    taken.insert(section.replacement);
  });
  for (const LinkedSection& section : linked.dyn_mem) {
    taken.insert(section.name);
  }
  for (const std::string& name : linked.definition->map->ignore) {
    taken.insert(name);
  }
  std::unordered_set<std::string_view> seen;
  for (const LinkedElf& elf : linked.elfs) {
    for (const LinkedHeader& header : elf.sections) {
      // Of a name in two ELFs the first one's section is taken.
      const bool is_first = seen.insert(header->name).second;
      if (!header->alloc || header->size == 0) continue;
      if (is_first && taken.contains(header->name)) continue;
      const std::string what =
          in_quotes(header->name) + " (" + size_text(*header) + ") ";
      out.add(elf.spots[1],
              !is_first && taken.contains(header->name)
                  ? what +
                        "has the name of a section of an ELF above, which "
                        "is taken in its place"
              : header->contents
                  ? what + "stands in no group: its bytes are in no image"
                  : what + "stands in no group: nothing reserves its memory");
    }
  }
}

void find_uncarried_sections(const Linked& linked, Findings& out) {
  std::unordered_set<std::string_view> carried;
  for_each_section(linked, [&](const LinkedModule& module, const LinkedGroup&,
                               const LinkedSection& section) {
    if (!module.is_built_in) carried.insert(section.name);
  });
  for_each_section(linked, [&](const LinkedModule& module, const LinkedGroup&,
                               const LinkedSection& section) {
    if (!module.is_built_in || !section.header) return;
    if (section.header->size == 0 || carried.contains(section.name)) return;
    const bool has_bytes = section.header->contents;
    const std::string size = counted(section.header->size, "byte");
    out.add(section.spot,
            in_quotes(section.name) + " stands in built-in modules alone, so " +
                (has_bytes ? "its " + size + " are in no image"
                           : "no group has its " + size + " of memory") +
                ": list it in a loadable module, too")
        .level = has_bytes ? Level::kError : Level::kWarning;
  });
}

void find_missing_exports(const Linked& linked, Findings& out) {
  std::size_t asked = 0;
  for (const LintStatement& statement : linked.definition->statements) {
    if (statement.key() != "export" || word_at(statement, 1) == "o") continue;
    const std::string name(name_of(statement, BlockKind::kModule));
    // A later statement may make it optional.
    const auto stated = linked.definition->map->exports.find(name);
    if (stated != linked.definition->map->exports.end() && stated->second) {
      continue;
    }
    if (linked.image_map.find_symbol(name).valid) continue;
    out.add(statement.words.back().spot,
            "no symbol list has " + in_quotes(name) +
                (++asked > kMaxQuestions
                     ? ""
                     : symbol_question(linked.image_map, name)) +
                "; write 'export o' if it may be absent");
  }
}

namespace {

// The segments of the module entries: of two groups of one type the later one.
std::vector<AddressSpan> segments_of(const FwOutMap& map) {
  std::vector<AddressSpan> segments;
  for (const auto& module : map.modules) {
    const FwOutMap::SectionGroup* slots[3] = {};
    for (const auto& group : module->groups) slots[group->type] = group.get();
    for (const auto* group : slots) {
      if (group == nullptr) continue;
      const std::uint32_t begin = group->sections.front()->header->vma;
      segments.push_back({begin, begin + (group->flags >> 16) * kPageSize});
    }
  }
  return segments;
}

}  // namespace

void find_exports_outside(const Linked& linked, Findings& out) {
  if (linked.refusal) return;
  const auto segments = segments_of(*linked.definition->map);
  for (const LintStatement& statement : linked.definition->statements) {
    if (statement.key() != "export") continue;
    const auto name = name_of(statement, BlockKind::kModule);
    const auto symbol = linked.image_map.find_symbol(std::string(name));
    if (!symbol.valid) continue;
    const bool is_inside =
        std::ranges::any_of(segments, [&](const AddressSpan& segment) {
          return segment.begin <= symbol.address &&
                 symbol.address < segment.end;
        });
    if (is_inside) continue;
    out.add(statement.words.back().spot,
            in_quotes(name) + " at " + hex_number(symbol.address) +
                " lies in no group of a module, so it isn't exported: the "
                "builder only warns");
  }
}

namespace {

std::uint64_t symbol_table_size(const FwOutMap& map) {
  std::uint64_t size = 8;  // count of symbols, length of names
  for (const auto& symbol : map.exported_symbols) {
    size += sizeof(SymbolRecord) + symbol.name.size() + 1;
  }
  return size;
}

std::uint64_t tables_size(const FwOutMap& map) {
  return sizeof(TovaFwBinaryHeader) + sizeof(ModuleEntry) * map.modules.size() +
         sizeof(ModuleConfig) * map.mod_cfg_total;
}

}  // namespace

void find_full_tables(const Linked& linked, Findings& out) {
  const FwOutMap& map = *linked.definition->map;
  if (linked.refusal) return;
  std::uint64_t size = tables_size(map);
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

namespace {

void check_sections(const LinkedElf& elf, const ElfFacts& file, Findings& out) {
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

void find_stale_tables(const Linked& linked, Findings& out) {
  const FwOutMap& map = *linked.definition->map;
  for (const LinkedElf& elf : linked.elfs) {
    const ElfFacts file = read_elf_facts(elf.files.elf, map.exports);
    check_sections(elf, file, out);
    check_symbols(elf, file, map, out);
  }
}

}  // namespace tova_fw_builder
