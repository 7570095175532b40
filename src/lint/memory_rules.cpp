// Addresses: of the memory classes as the text has them; and where sections
// lie, and are loaded to, which the linker's output tells.
#include <algorithm>
#include <map>
#include <unordered_map>
#include <utility>
#include <vector>

#include "companion/ground/message_text.h"
#include "driver/ground/numbers.h"
#include "layout/records/addon_file.h"
#include "lint/rule_functions.h"
#include "lint/statement_forms.h"
#include "lint/writing.h"

namespace tova_fw_builder {

namespace {

// Sections in the order in which a group is written.
std::vector<const LinkedSection*> by_load_address(const LinkedGroup& group) {
  std::vector<const LinkedSection*> order;
  for (const LinkedSection& section : group.sections) {
    if (section.header) order.push_back(&section);
  }
  std::ranges::stable_sort(order, {}, [](const LinkedSection* section) {
    return section->header->lma;
  });
  return order;
}

std::uint64_t end_of(std::uint32_t begin, std::uint32_t size) {
  return std::uint64_t{begin} + size;
}

std::string range_text(std::uint32_t begin, std::uint32_t size) {
  return hex_number(begin) + " to " + hex_number(end_of(begin, size));
}

// The statement of each section of the memory map: that of its owner.
class Statements {
 public:
  explicit Statements(const Linked& linked) {
    for_each_section(linked, [&](const LinkedModule& module, const LinkedGroup&,
                                 const LinkedSection& section) {
      const auto [place, is_new] =
          places_.try_emplace(section.name, Place{&section, &module});
      // As the map's owners: a built-in module ahead of the one that carries
      // its bytes.
      if (!is_new && module.is_built_in && !place->second.module->is_built_in) {
        place->second = {&section, &module};
      }
    });
    for (const LinkedSection& section : linked.dyn_mem) {
      places_.try_emplace(section.name, Place{&section, nullptr});
    }
  }

  Spot spot(const MemoryMap::Section& section) const {
    return places_.at(section.name).section->spot;
  }

 private:
  struct Place {
    const LinkedSection* section;
    const LinkedModule* module;
  };
  std::unordered_map<std::string_view, Place> places_;
};

std::string section_text(const MemoryMap::Section& section) {
  return in_quotes(section.name) + " (" +
         range_text(section.address, section.size) + ")";
}

Spot hardware_buffer_spot(const Definition& definition) {
  // The base may be left out; without a size there is no buffer.
  Spot spot;
  for (const LintStatement& statement : definition.statements) {
    if (statement.key() == "hw_buf_ba") return statement.spot();
    if (statement.key() == "hw_buf_size") spot = statement.spot();
  }
  return spot;
}

// The class in which it begins, and whose end it exceeds.
const MemoryMap::Class* class_of(const MemoryMap& memory,
                                 const MemoryMap::Section& section) {
  const auto found = std::ranges::find_if(
      memory.classes, [&](const MemoryMap::Class& memory_class) {
        return memory_class.base <= section.address &&
               section.address < memory_class.base + memory_class.size;
      });
  return found == memory.classes.end() ? nullptr : &*found;
}

void find_overlaps_in_groups(const Linked& linked, Findings& out) {
  for (const LinkedModule& module : linked.modules) {
    if (module.is_built_in) continue;
    for (const LinkedGroup& group : module.groups) {
      const auto order = by_load_address(group);
      for (std::size_t i = 0; i + 1 < order.size(); ++i) {
        const auto& header = *order[i]->header;
        const auto& next = *order[i + 1]->header;
        // Where nothing is written, nothing is filled up.
        const bool is_written =
            header.contents &&
            std::any_of(order.begin() + static_cast<std::ptrdiff_t>(i) + 1,
                        order.end(), [](const LinkedSection* section) {
                          return section->header->contents;
                        });
        if (!is_written || next.lma >= end_of(header.lma, header.size)) {
          continue;
        }
        out.add(order[i + 1]->spot,
                in_quotes(order[i + 1]->name) + " is loaded to " +
                    hex_number(next.lma) + ", inside " +
                    in_quotes(order[i]->name) + " (" +
                    range_text(header.lma, header.size) +
                    "): nearly 4 GiB of zeros come between them")
            .notes.push_back({order[i]->spot, "the other section"});
      }
    }
  }
}

void find_load_disorder(const Linked& linked, Findings& out) {
  constexpr std::uint32_t kHalf = 0x80000000;
  if (linked.refusal) return;
  const Writing writing = plan_writing(*linked.definition->map);
  const FwOutMap::Module* last_module = nullptr;
  for (const WrittenGroup& group : writing.groups) {
    const bool is_same =
        std::exchange(last_module, group.module) == group.module;
    if (group.pad < kHalf) continue;
    const auto& first = *group.group->sections.front();
    const auto& before = *group.behind->header;
    if (first.header->lma >= end_of(before.lma, before.size)) continue;
    // Of two modules in the wrong order the module is to blame.
    out.add(linked.spot_of(is_same ? static_cast<const void*>(group.group)
                                   : group.module),
            in_quotes(first.name) + " is loaded to " +
                hex_number(first.header->lma) + ", but written behind " +
                in_quotes(group.behind->name) + " (" +
                range_text(before.lma, before.size) +
                "): " + hex_number(group.pad) +
                " bytes of zeros come between them; the load addresses of "
                "addons have to rise from group to group and from module to "
                "module")
        .notes.push_back({linked.spot_of(group.behind), "the other section"});
  }
}

}  // namespace

void find_load_overlaps(const Linked& linked, Findings& out) {
  find_overlaps_in_groups(linked, out);
  find_load_disorder(linked, out);
}

void find_load_gaps(const Linked& linked, Findings& out) {
  constexpr std::uint32_t kWide = 16 << 20;
  if (linked.refusal) return;
  for (const WrittenGap& gap : plan_writing(*linked.definition->map).gaps) {
    const auto& behind = *gap.behind->header;
    const std::uint32_t address = gap.section->header->lma;
    // load-overlap tells of the others.
    const bool rises = address >= end_of(behind.lma, behind.size);
    if (gap.zeros < kWide || !rises) continue;
    out.add(linked.spot_of(gap.section),
            in_quotes(gap.section->name) + " is loaded to " +
                hex_number(address) + ", far behind " +
                in_quotes(gap.behind->name) + " (" +
                range_text(behind.lma, behind.size) + "): " +
                hex_number(gap.zeros) + " bytes of zeros come between them")
        .notes.push_back({linked.spot_of(gap.behind), "the other section"});
  }
}

void find_run_overlaps(const Linked& linked, Findings& out) {
  if (linked.memory.overlaps.empty()) return;
  const Statements statements(linked);
  const Spot buffer = hardware_buffer_spot(*linked.definition);
  for (const MemoryMap::Overlap& overlap : linked.memory.overlaps) {
    std::uint32_t first = overlap.first;
    std::uint32_t second = overlap.second;
    const auto is_buffer = [](std::uint32_t number) {
      return number == MemoryMap::kIsHardwareBuffer;
    };
    const auto spot_of = [&](std::uint32_t number) {
      return is_buffer(number)
                 ? buffer
                 : statements.spot(linked.memory.sections[number]);
    };
    // The later statement speaks, but never the buffer's.
    if (is_buffer(second) ||
        (!is_buffer(first) && spot_of(second) < spot_of(first))) {
      std::swap(first, second);
    }
    const auto& section = section_at(linked.memory, second);
    const auto& other = section_at(linked.memory, first);
    out.add(spot_of(second),
            section_text(section) + " shares " + counted(overlap.size, "byte") +
                " from " + hex_number(overlap.address) + " on with " +
                (is_buffer(first)
                     ? "the hardware buffer (" +
                           range_text(other.address, other.size) + ")"
                     : section_text(other) + " of " + in_quotes(other.owner)))
        .notes.push_back({spot_of(first), is_buffer(first)
                                              ? "the buffer"
                                              : "the other section"});
  }
}

namespace {

void find_outside(const Linked& linked, bool wants_full, Findings& out) {
  const MemoryMap& memory = linked.memory;
  if (memory.classes.empty() || memory.outside_classes.empty()) return;
  const Statements statements(linked);
  for (const MemoryMap::Outside& outside : memory.outside_classes) {
    const auto& section = memory.sections[outside.section];
    const MemoryMap::Class* const full = class_of(memory, section);
    if ((full != nullptr) != wants_full) continue;
    out.add(statements.spot(section),
            section_text(section) +
                (full != nullptr
                     ? " exceeds memory class " + in_quotes(full->name) +
                           " by " + counted(outside.bytes, "byte")
                 : outside.bytes == section.size
                     ? " lies in no memory class"
                     : " lies in no memory class with " +
                           counted(outside.bytes, "byte")));
  }
}

}  // namespace

void find_sections_outside(const Linked& linked, Findings& out) {
  find_outside(linked, false, out);
}

void find_full_classes(const Linked& linked, Findings& out) {
  find_outside(linked, true, out);
}

void find_unaligned_addons(const Linked& linked, Findings& out) {
  if (!keeps_addons_in_binary(linked.definition->map->binary_ver)) return;
  for (const LinkedModule& module : linked.modules) {
    if (!module.is_addon) continue;
    for (const LinkedGroup& group : module.groups) {
      const auto order = by_load_address(group);
      if (order.empty() || !order.front()->header->contents) continue;
      const std::uint32_t alignment = order.front()->header->alignment;
      if (alignment % kPageSize == 0) continue;
      out.add(order.front()->spot,
              in_quotes(order.front()->name) +
                  " comes first in its group and is "
                  "aligned to " +
                  counted(alignment, "byte") +
                  ": the groups of an addon begin on a page, 4096");
    }
  }
}

void find_entries_outside(const Linked& linked, Findings& out) {
  for (const LinkedModule& module : linked.modules) {
    for (const LinkedGroup& group : module.groups) {
      if (group.entry == FwOutMap::SectionGroup::kNoEntry) continue;
      const auto order = by_load_address(group);
      const bool is_inside =
          std::ranges::any_of(order, [&](const LinkedSection* section) {
            const auto& header = *section->header;
            return header.vma <= group.entry &&
                   group.entry < end_of(header.vma, header.size);
          });
      if (is_inside || order.empty()) continue;
      out.add(group.entry_spot, "the entry point " + hex_number(group.entry) +
                                    " lies in no section of its group");
    }
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
