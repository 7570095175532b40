// Rules about the modules that the statements make: kind, name, UUID, type, and
// what a module lacks. A name is what a module is called for want of a kind.
#include <algorithm>
#include <map>
#include <set>

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

void find_unknown_kinds(const Definition& definition, Findings& out) {
  for (const LintStatement& statement : definition.statements) {
    if (form_of(definition, statement)->shape != Shape::kModule) continue;
    const std::string_view word = word_at(statement, 1);
    const std::string_view next = word_at(statement, 2);
    if (next.empty() || next.starts_with('#') || is_module_kind(word)) continue;
    out.add(statement.words[1].spot,
            in_quotes(word) + " is no kind, so the module is called " +
                in_quotes(word) + " and " + in_quotes(next) +
                " is ignored; the kinds are b, ba, d, da, l and o");
  }
}

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

}  // namespace tova_fw_builder
