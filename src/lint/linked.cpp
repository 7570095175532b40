#include "lint/linked.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

#include "companion/ground/input_file.h"
#include "companion/ground/trouble.h"
#include "driver/ground/files.h"
#include "input_map/fw_image_map.h"
#include "lint/refusal_of_tables.h"
#include "lint/statement_forms.h"
#include "memory_map/measures.h"
#include "signing/keys/key_list.h"

namespace tova_fw_builder {

namespace {

LinkedSection link_section(const LintStatement& statement, BlockKind block,
                           const FwImageMap& image_map) {
  const StatementForm& form = *find_form(block, statement.key());
  const Taken taken = taken_words(form, statement);
  LinkedSection section;
  section.statement = &statement;
  section.name = name_of(statement, block);
  section.spot =
      statement.words[std::min(taken.name, statement.words.size() - 1)].spot;
  section.header = image_map.find_section(std::string(section.name));
  if (form.shape != Shape::kSection) return section;
  section.is_optional = taken.name == 2 && word_at(statement, 1) == "o";
  if (taken.end == taken.name + 3) {
    section.replacement = word_at(statement, taken.name + 2);
    section.replaced_by =
        image_map.find_section(std::string(section.replacement));
  }
  return section;
}

LinkedGroup link_group(const Definition& definition, const LintBlock& block,
                       const FwOutMap::SectionGroup& from, Linked& linked) {
  LinkedGroup group;
  group.opened = &definition.statements[block.opened_by];
  linked.spots[&from] = group.opened->spot();
  group.type = from.type;
  group.entry = from.entry;
  group.sections.reserve(from.sections.size());
  for (const std::uint32_t number : block.statements) {
    const LintStatement& statement = definition.statements[number];
    if (statement.key() == "section") {
      const auto& record = from.sections[group.sections.size()];
      group.sections.push_back(
          link_section(statement, BlockKind::kGroup, linked.image_map));
      linked.spots[record.get()] = group.sections.back().spot;
    } else {
      group.entry_spot = statement.words.back().spot;
    }
  }
  return group;
}

// Blocks and records are both in the order of the statements.
void link_modules(const Definition& definition, Linked& linked) {
  std::size_t module_number = 0;
  std::map<std::uint32_t, std::size_t> module_of_block;
  for (std::uint32_t i = 0; i < definition.blocks.size(); ++i) {
    const LintBlock& block = definition.blocks[i];
    if (block.kind == BlockKind::kModule) {
      const auto& from = *definition.map->modules[module_number];
      module_of_block[i] = module_number++;
      LinkedModule module;
      module.opened = &definition.statements[block.opened_by];
      linked.spots[&from] = module.opened->spot();
      module.name = name_of(*module.opened, BlockKind::kImage);
      module.is_built_in = from.load_type == FwOutMap::Module::kBuiltIn;
      module.is_addon = from.module_kind == FwOutMap::Module::kAddon;
      module.is_required = from.required;
      linked.modules.push_back(std::move(module));
    } else if (block.kind == BlockKind::kGroup) {
      const std::size_t number = module_of_block[block.parent];
      auto& groups = linked.modules[number].groups;
      groups.push_back(link_group(
          definition, block,
          *definition.map->modules[number]->groups[groups.size()], linked));
    }
  }
  auto memory_class = definition.map->memory_classes.begin();
  for (const LintStatement& statement : definition.statements) {
    if (statement.key() == "memory_class") {
      linked.spots[&*memory_class++] = statement.spot();
    } else if (statement.key() == "dyn_mem") {
      linked.dyn_mem.push_back(
          link_section(statement, BlockKind::kImage, linked.image_map));
    }
  }
}

// Ahead of the binding, which ends at the first thing that it refuses.
void bind_headers(FwOutMap& map, const FwImageMap& image_map) {
  const auto bind = [&image_map](FwOutMap::Section& section) {
    section.header = image_map.find_section(section.name);
  };
  for (const auto& module : map.modules) {
    for (const auto& group : module->groups) {
      for (const auto& section : group->sections) bind(*section);
    }
  }
  for (const auto& section : map.dyn_mem) bind(*section);
}

// Each ELF apart: the map has the first section of a name alone.
void read_elfs(const ElfList& elfs, Spot list, Linked& linked) {
  for (std::uint32_t i = 0; i < elfs.size(); ++i) {
    LinkedElf elf;
    elf.files = elfs[i];
    for (std::uint32_t line = 0; line < 3; ++line) {
      elf.spots[line] = {list.file, 3 * i + line + 1, 0, 0};
    }
    FwImageMap one;
    read_section_table(one, *open_input(elf.files.memmap), nullptr);
    elf.sections.reserve(one.sections.size());
    for (auto& [name, header] : one.sections) {
      elf.sections.push_back(std::move(header));
    }
    linked.elfs.push_back(std::move(elf));
  }
}

// Of a list that can't be read, the reading tells.
void require_no_pipes(const std::string& list) {
  ElfList elfs;
  try {
    elfs = read_elf_list(list);
  } catch (const std::runtime_error&) {
    return;
  }
  for (const ElfListEntry& elf : elfs) {
    require_no_pipe(elf.memmap);
    require_no_pipe(elf.nm);
  }
}

bool cannot_open(const std::exception& error) {
  return std::string_view(error.what()).starts_with("Failed to open file");
}

}  // namespace

Linked link(const Definition& definition, const BuildInputs& inputs,
            std::uint32_t elf_list_file) {
  Linked linked;
  linked.definition = &definition;
  linked.elf_list = {elf_list_file, 0, 0, 0};
  if (inputs.key_list_path.empty()) {
    linked.image_map.add_stream_section(kPublicKeysStorage,
                                        std::make_shared<std::stringstream>());
  }
  FwOutMap& map = *definition.map;
  require_no_pipes(inputs.elf_list_path);
  try {
    const ElfList elfs = read_linker_output(inputs, linked.image_map);
    read_elfs(elfs, linked.elf_list, linked);
  } catch (const std::runtime_error& error) {
    if (cannot_open(error)) throw;
    UnreadTables unread = explain_tables(inputs, linked.elf_list,
                                         without_key_bytes(error.what()));
    linked.is_unread = true;
    linked.refusal = std::move(unread.text);
    linked.unread_at = unread.spot;
    linked.unread_notes = std::move(unread.notes);
    return linked;
  }
  link_modules(definition, linked);
  bind_headers(map, linked.image_map);
  measure_addresses(map, linked.memory);
  try {
    connect_and_check(map, linked.image_map);
  } catch (const std::runtime_error& error) {
    linked.refusal = error.what();
  }
  return linked;
}

}  // namespace tova_fw_builder
