// lint/linked.h
// The definitions together with what the linker produced.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "input_map/elf_list.h"
#include "input_map/fw_image_map.h"
#include "lint/definition.h"
#include "memory_map/memory_map.h"

namespace tova_fw_builder {

// How often a rule asks which name was meant: comparing each missing one with
// each of a hundred thousand takes its time.
inline constexpr std::size_t kMostQuestions = 20;

using LinkedHeader = std::shared_ptr<FwImageMap::SectionHeader>;

// A `section` or `dyn_mem` statement. The builder's passes sort and erase what
// they bind, so this is what there was ahead of them.
struct LinkedSection {
  const LintStatement* statement = nullptr;
  Spot spot;  // of the name
  std::string_view name;
  bool is_optional = false;
  LinkedHeader header;  // null if there is none
  std::string_view replacement;
  LinkedHeader replaced_by;
};

struct LinkedGroup {
  const LintStatement* opened = nullptr;
  std::uint32_t type = 0;
  std::uint32_t entry = FwOutMap::SectionGroup::kNoEntry;  // by a statement
  Spot entry_spot;
  std::vector<LinkedSection> sections;
};

struct LinkedModule {
  const LintStatement* opened = nullptr;
  std::string_view name;
  bool is_built_in = false;
  bool is_addon = false;
  bool is_required = true;
  std::vector<LinkedGroup> groups;
};

struct LinkedElf {
  ElfListEntry files;
  Spot spots[3];                       // its three lines of the ELF list
  std::vector<LinkedHeader> sections;  // by name
};

struct Linked {
  const Definition* definition = nullptr;
  FwImageMap image_map;
  Spot elf_list;
  std::vector<LinkedElf> elfs;
  std::vector<LinkedModule> modules;
  std::vector<LinkedSection> dyn_mem;
  MemoryMap memory;  // of the sections that were found
  // The text that the builder refuses with; else the map is bound.
  std::optional<std::string> refusal;
  // It is of the reading of the tables, and stands there: nothing else was
  // done.
  bool is_unread = false;
  Spot unread_at;
  std::vector<Note> unread_notes;
  // Where the modules, groups, sections and memory classes of the map stand.
  std::unordered_map<const void*, Spot> spots;

  // {} for null.
  Spot spot_of(const void* record) const {
    return record == nullptr ? Spot{} : spots.at(record);
  }
};

// Reads what the ELF list names, and binds. Throws std::runtime_error as the
// builder's readers do for a file that can't be opened, and as require_no_pipe
// does for a table. `elf_list_file` is the number that the ELF list has among
// the sources, and the key list has the one behind it.
Linked link(const Definition& definition, const BuildInputs& inputs,
            std::uint32_t elf_list_file);

// Calls take(module, group, section) for each section of a module.
template <typename Take>
void for_each_section(const Linked& linked, const Take& take) {
  for (const LinkedModule& module : linked.modules) {
    for (const LinkedGroup& group : module.groups) {
      for (const LinkedSection& section : group.sections) {
        take(module, group, section);
      }
    }
  }
}

}  // namespace tova_fw_builder
