// Rules about the modules and memory classes that the statements make.
#include <algorithm>
#include <map>
#include <set>

#include "companion/ground/message_text.h"
#include "definitions/uuid/uuid.h"
#include "driver/ground/numbers.h"
#include "lint/rule_functions.h"
#include "lint/statement_forms.h"

namespace tova_fw_builder {

namespace {

// A module as it stands in the text.
struct ModuleText {
  const LintBlock& block;
  const LintStatement& opened;
  const LintWord& name;
};

template <typename Take>
void for_each_module(const Definition& definition, const Take& take) {
  for (const LintBlock& block : definition.blocks) {
    if (block.kind != BlockKind::kModule) continue;
    const LintStatement& opened = definition.statements[block.opened_by];
    const Taken taken = taken_words(*form_of(definition, opened), opened);
    take(ModuleText{
        block, opened,
        opened.words[std::min(taken.name, opened.words.size() - 1)]});
  }
}

// The last one of a block counts.
const LintStatement* find_statement(const Definition& definition,
                                    const LintBlock& block,
                                    std::string_view key) {
  const LintStatement* found = nullptr;
  for (const std::uint32_t number : block.statements) {
    const LintStatement& statement = definition.statements[number];
    if (statement.key() == key) found = &statement;
  }
  return found;
}

// The module that was read last when a refusal ended the reading: what it
// lacks may come yet.
bool is_unfinished(const Definition& definition, const LintBlock& block) {
  if (!definition.refusal) return false;
  return block.ended_by == LintBlock::kNone ||
         block.ended_by == definition.refusal->line;
}

std::string_view generation_of(const Definition& definition) {
  const LintStatement* const version =
      find_statement(definition, definition.blocks.front(), "binary_ver");
  return version ? word_at(*version, 1) : std::string_view();
}

}  // namespace

void find_cut_names(const Definition& definition, Findings& out) {
  constexpr std::size_t kRoom = 8;
  std::map<std::string_view, const LintWord*> seen;
  for_each_module(definition, [&](const ModuleText& module) {
    const std::string_view name = module.name.text;
    const std::string_view kept = name.substr(0, kRoom);
    const auto [place, is_new] = seen.try_emplace(kept, &module.name);
    if (!is_new) {
      out.add(module.name.spot, "two modules are called " + in_quotes(kept) +
                                    " in the image, which keeps 8 characters")
          .notes.push_back({place->second->spot, "the other one"});
    } else if (name.size() > kRoom) {
      out.add(module.name.spot,
              "the image keeps 8 characters of the name: " + in_quotes(kept));
    }
  });
}

void find_dropped_names(const Definition& definition, Findings& out) {
  for (const LintStatement& statement : definition.statements) {
    if (statement.key() != "binary_name" || word_at(statement, 1).size() <= 8) {
      continue;
    }
    out.add(statement.words[1].spot,
            in_quotes(statement.words[1].text) +
                " has more than 8 characters: the name in the header stays "
                "empty");
  }
}

void find_missing_uuids(const Definition& definition, Findings& out) {
  for_each_module(definition, [&](const ModuleText& module) {
    const LintStatement* const uuid =
        find_statement(definition, module.block, "uuid");
    if (uuid == nullptr && !is_unfinished(definition, module.block)) {
      out.add(module.name.spot, "module " + in_quotes(module.name.text) +
                                    " has no uuid: loaders know modules by it");
    }
    if (uuid == nullptr || uuid->words.size() < 2) return;
    const std::string_view text = uuid->words[1].text;
    if (text.find_first_not_of("0-") != text.npos) return;
    out.add(uuid->words[1].spot,
            "the UUID is all zeros, as if there were none");
  });
}

void find_duplicate_uuids(const Definition& definition, Findings& out) {
  const bool is_whole = generation_of(definition) == "1.5";
  std::map<std::pair<UuidNode, std::array<std::uint8_t, 16>>, Spot> seen;
  for_each_module(definition, [&](const ModuleText& module) {
    const LintStatement* const stated =
        find_statement(definition, module.block, "uuid");
    if (stated == nullptr && is_unfinished(definition, module.block)) return;
    const bool is_stated = stated != nullptr && stated->words.size() > 1;
    const Uuid uuid =
        is_stated ? parse_uuid(std::string(stated->words[1].text)) : Uuid();
    const Spot spot = is_stated ? stated->words[1].spot : module.name.spot;
    // Only the whole UUID names an addon's file in 1.5.
    const auto key = is_whole ? uuid.bytes() : std::array<std::uint8_t, 16>{};
    const auto [place, is_new] = seen.try_emplace({uuid.node(), key}, spot);
    if (is_new) return;
    out.add(spot, is_stated ? is_whole ? "another module has this UUID"
                                       : "another module has these last 12 "
                                         "digits: they must differ"
                            : "another module has no uuid either: the two are "
                              "one to the loader")
        .notes.push_back({place->second, "the other one"});
  });
}

void find_empty_modules(const Definition& definition, Findings& out) {
  std::set<std::uint32_t> with_sections;
  for (const LintStatement& statement : definition.statements) {
    if (statement.key() != "section") continue;
    const LintBlock& block = definition.blocks[statement.block];
    if (block.kind == BlockKind::kGroup) with_sections.insert(block.parent);
  }
  for_each_module(definition, [&](const ModuleText& module) {
    const auto number =
        static_cast<std::uint32_t>(&module.block - definition.blocks.data());
    if (with_sections.contains(number)) return;
    if (is_unfinished(definition, module.block)) return;
    out.add(module.name.spot, "module " + in_quotes(module.name.text) +
                                  " has no section, so the image is made "
                                  "without it");
  });
}

void find_empty_groups(const Definition& definition, Findings& out) {
  std::set<std::uint32_t> with_sections;  // groups and their modules
  for (const LintStatement& statement : definition.statements) {
    if (statement.key() != "section") continue;
    with_sections.insert(statement.block);
    with_sections.insert(definition.blocks[statement.block].parent);
  }
  for (std::uint32_t i = 0; i < definition.blocks.size(); ++i) {
    const LintBlock& block = definition.blocks[i];
    if (block.kind != BlockKind::kGroup || with_sections.contains(i)) continue;
    // empty-module tells of a module that has none at all.
    if (!with_sections.contains(block.parent)) continue;
    if (is_unfinished(definition, block)) continue;
    out.add(definition.statements[block.opened_by].spot(),
            block_name(definition, i) +
                " has no section, so the module is made without it");
  }
}

void find_missing_entries(const Definition& definition, Findings& out) {
  std::set<std::uint32_t> with_text;
  std::set<std::uint32_t> with_sections;
  for (const LintStatement& statement : definition.statements) {
    if (statement.key() != "section") continue;
    const LintBlock& group = definition.blocks[statement.block];
    const LintStatement& opened = definition.statements[group.opened_by];
    with_sections.insert(group.parent);
    if (name_of(opened, BlockKind::kModule) == "text") {
      with_text.insert(group.parent);
    }
  }
  for_each_module(definition, [&](const ModuleText& module) {
    const auto number =
        static_cast<std::uint32_t>(&module.block - definition.blocks.data());
    const std::string_view kind = word_at(module.opened, 1);
    const bool starts =
        (kind == "ba" || kind == "da") && module.opened.words.size() > 2;
    if (!starts || with_text.contains(number)) return;
    // empty-module tells of those.
    if (!with_sections.contains(number)) return;
    if (is_unfinished(definition, module.block)) return;
    out.add(module.name.spot,
            "module " + in_quotes(module.name.text) +
                " is started by the loader and has no section in a group text: "
                "its entry point is 0");
  });
}

void find_second_bases(const Definition& definition, Findings& out) {
  const LintWord* first = nullptr;
  for_each_module(definition, [&](const ModuleText& module) {
    const LintStatement* const type =
        find_statement(definition, module.block, "type");
    if (type == nullptr || type->words.size() < 2) return;
    const LintWord& word = type->words[1];
    const ScannedNumber number = scan_number(word.text, 10);
    // bad-number tells of what isn't read as a whole.
    if (number.length != word.text.size() || number.magnitude != 0) return;
    if (first == nullptr) {
      first = &word;
      return;
    }
    out.add(word.spot, "type 0 is that of the base firmware, and there is one")
        .notes.push_back({first->spot, "the other one"});
  });
}

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

void find_duplicate_classes(const Definition& definition, Findings& out) {
  std::map<std::string_view, const LintWord*> seen;
  for (const LintStatement& statement : definition.statements) {
    if (statement.key() != "memory_class" || statement.words.size() < 2) {
      continue;
    }
    const LintWord& name = statement.words[1];
    const auto [place, is_new] = seen.try_emplace(name.text, &name);
    if (is_new) continue;
    out.add(name.spot, "another memory class is called " + in_quotes(name.text))
        .notes.push_back({place->second->spot, "the other class"});
  }
}

void find_overlapping_classes(const Definition& definition, Findings& out) {
  struct Class {
    std::uint64_t begin;
    std::uint64_t end;
    const LintStatement* statement;
  };
  std::vector<Class> classes;
  for (const LintStatement& statement : definition.statements) {
    if (statement.key() != "memory_class") continue;
    const auto base = parse_unsigned(
        word_at(statement,
                std::min<std::size_t>(2, statement.words.size() - 1)),
        16);
    const auto size = parse_unsigned(
        word_at(statement,
                std::min<std::size_t>(3, statement.words.size() - 1)),
        16);
    if (size == 0) continue;
    classes.push_back({base, std::uint64_t{base} + size, &statement});
  }
  // In order of their bases, the one that reaches furthest is met by the next.
  std::ranges::stable_sort(classes, {}, &Class::begin);
  const Class* furthest = nullptr;
  for (const Class& next : classes) {
    if (furthest && next.begin < furthest->end) {
      const bool is_later = furthest->statement < next.statement;
      const Class& later = is_later ? next : *furthest;
      const Class& earlier = is_later ? *furthest : next;
      out.add(later.statement->spot(),
              "memory class " + in_quotes(word_at(*later.statement, 1)) +
                  " shares " +
                  hex_number(std::min(furthest->end, next.end) - next.begin) +
                  " bytes from " + hex_number(next.begin) + " on with " +
                  in_quotes(word_at(*earlier.statement, 1)))
          .notes.push_back({earlier.statement->spot(), "the other class"});
    }
    if (furthest == nullptr || next.end > furthest->end) furthest = &next;
  }
}

}  // namespace tova_fw_builder
