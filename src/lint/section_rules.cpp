// Sections of the definition: those that it lists twice, and all of them
// against those that the linker produced.
#include <algorithm>
#include <map>
#include <unordered_set>

#include "companion/ground/message_text.h"
#include "companion/ground/nearest.h"
#include "lint/rule_functions.h"
#include "lint/statement_forms.h"

namespace tova_fw_builder {

namespace {

bool is_built_in(const LintStatement& opened) {
  const auto kind = word_at(opened, 1);
  return (kind == "b" || kind == "ba") && opened.words.size() > 1;
}

bool is_in_bss(const Definition& definition, const LintStatement& section) {
  const LintBlock& group = definition.blocks[section.block];
  return group.kind == BlockKind::kGroup &&
         name_of(definition.statements[group.opened_by], BlockKind::kModule) ==
             "bss";
}

Spot name_spot(const Definition& definition, const LintStatement& section) {
  const Taken taken = taken_words(*form_of(definition, section), section);
  return section.words[std::min(taken.name, section.words.size() - 1)].spot;
}

class SectionNames {
 public:
  explicit SectionNames(const FwImageMap& map) : map_(map) {}

  std::string question(std::string_view name) {
    if (++asked_ > kMostQuestions) return "";
    Nearest near(name);
    for (const auto& [known, header] : map_.sections) near.offer(known);
    return near.question();
  }

 private:
  const FwImageMap& map_;
  std::size_t asked_ = 0;
};

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

void find_sections_twice(const Definition& definition, Findings& out) {
  // What stands in built-in modules stands elsewhere, too; but two don't start
  // at one place.
  std::map<std::string_view, const LintStatement*> carried;
  std::map<std::string_view, const LintStatement*> entries;
  for (const LintStatement& statement : definition.statements) {
    const LintBlock& block = definition.blocks[statement.block];
    const bool is_dyn_mem = statement.key() == "dyn_mem";
    const bool is_section =
        block.kind == BlockKind::kGroup && statement.key() == "section";
    if (!is_dyn_mem && !is_section) continue;
    const LintBlock& module = definition.blocks[is_section ? block.parent : 0];
    const bool is_inner =
        is_section && is_built_in(definition.statements[module.opened_by]);
    if (is_inner && word_at(statement, 1) != "ep") continue;
    const auto name = name_of(statement, block.kind);
    const auto [place, is_new] =
        (is_inner ? entries : carried).try_emplace(name, &statement);
    if (is_new) continue;
    out.add(name_spot(definition, statement),
            is_inner ? in_quotes(name) + " is the entry of two built-in modules"
                     : in_quotes(name) + " is listed twice: " +
                           (is_dyn_mem || is_in_bss(definition, statement)
                                ? "its memory counts twice"
                                : "its bytes count and stand in the image "
                                  "twice"))
        .notes.push_back({place->second->spot(), "the first time"});
  }
}

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

}  // namespace tova_fw_builder
