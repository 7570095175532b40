// Binding of groups. A missing section is no error here, only a line of the
// log: whether a module may do without it is known once all of its groups are
// bound, and is_referenced decides it.
#include "layout/group_binding.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <utility>
#include <vector>

#include "driver/log.h"
#include "layout/map_checks.h"

namespace tova_fw_builder {

namespace {

using Header = FwImageMap::SectionHeader;
using Section = FwOutMap::Section;
using Group = FwOutMap::SectionGroup;

constexpr unsigned kTypeShift = 8;
constexpr std::uint32_t kTypeMask = 0xFu << kTypeShift;
constexpr unsigned kPagesShift = 16;
constexpr std::uint32_t kPagesMask = 0xFFFFu << kPagesShift;

std::uint32_t section_class(const Header& header) {
  if (header.code) return Group::kText;
  if (header.data) return Group::kRodata;
  if (header.alloc && !header.contents) return Group::kBss;
  throw std::runtime_error("Invalid segment type");
}

std::uint32_t flags_of(const Header& header) {
  const std::pair<bool, std::uint32_t> bits[] = {
      {header.contents, Group::kContents}, {header.alloc, Group::kAlloc},
      {header.load, Group::kLoad},         {header.readonly, Group::kReadonly},
      {header.code, Group::kCode},         {header.data, Group::kData},
      {header.on_demand, Group::kOnDemand}};
  std::uint32_t flags = 0;
  for (const auto& [is_set, bit] : bits) {
    if (is_set) flags |= bit;
  }
  return flags;
}

void log_missing(const Section& section) {
  if (section.optional) {
    if (log_level() >= kLogInfo) {
      LogLine(kLogInfo).stream() << "Section header " << section.name
                                 << " not found, marked as optional";
    }
  } else if (log_level() >= kLogWarning) {
    LogLine(kLogWarning).stream()
        << "Section header " << section.name << " not found";
  }
}

void attach_section(Group& group, Section& section, const FwImageMap& image_map,
                    bool check_types) {
  if (section.header == nullptr) {
    section.header = image_map.find_section(section.name);
  }
  if (section.header == nullptr) {
    log_missing(section);
    return;
  }
  if (check_types && section_class(*section.header) != group.type) {
    throw std::runtime_error("Invalid section type");
  }
  if (group.flags == 0) {
    group.flags = flags_of(*section.header);
  }
  if (section.replacement == nullptr) return;
  Section& replacement = *section.replacement;
  if (replacement.header == nullptr) {
    replacement.header = image_map.find_section(replacement.name);
  }
  if (replacement.header == nullptr && log_level() >= kLogWarning) {
    LogLine(kLogWarning).stream()
        << "Section replacement header " << replacement.name << " not found";
  }
}

// An `entry` statement counts too: an entry point section beside it is an
// error.
void set_entry(Group& group) {
  for (const auto& section : group.sections) {
    if (!section->entrypoint || section->header == nullptr) continue;
    if (group.entry != Group::kNoEntry) {
      throw std::runtime_error("Double entry point defined");
    }
    group.entry = section->header->vma;
  }
}

}  // namespace

void attach_group(Group& group, const FwImageMap& image_map, bool check_types,
                  bool loadable) {
  if (log_level() >= kLogDetail) {
    LogLine(kLogDetail).stream()
        << "  Attaching headers to group " << group_type_name(group.type)
        << " (" << group.type << ')';
  }
  if (group.sections.empty()) return;
  for (const auto& section : group.sections) {
    attach_section(group, *section, image_map, check_types);
  }
  if (!is_complete(group)) return;
  std::stable_sort(group.sections.begin(), group.sections.end(),
                   [](const auto& a, const auto& b) {
                     return load_address(*a) < load_address(*b);
                   });
  group.flags &= ~(kTypeMask | kPagesMask | Group::kOnDemand);
  group.flags |= group.type << kTypeShift & kTypeMask;
  group.flags |= group_pages(group) << kPagesShift;
  // The section table can't tell, so the definition alone decides.
  if (group.on_demand) group.flags |= Group::kOnDemand;
  if (!loadable) group.flags &= ~std::uint32_t{Group::kLoad};
  set_entry(group);
}

bool is_resolved(const Section& section) {
  return section.header != nullptr &&
         (section.replacement == nullptr || is_resolved(*section.replacement));
}

bool is_complete(const Group& group) {
  return std::all_of(group.sections.begin(), group.sections.end(),
                     [](const auto& section) {
                       return section->optional || is_resolved(*section);
                     });
}

void remove_optional(Group& group) {
  std::vector<std::shared_ptr<Section>> kept;
  for (auto& section : group.sections) {
    if (!section->optional || section->header != nullptr) {
      kept.push_back(std::move(section));
    } else if (log_level() >= kLogInfo) {
      LogLine(kLogInfo).stream()
          << "Removing optional section " << section->name;
    }
  }
  group.sections = std::move(kept);
}

void remove_empty_groups(FwOutMap::Module& module) {
  std::vector<std::unique_ptr<Group>> kept;
  for (auto& group : module.groups) {
    if (!group->sections.empty()) {
      kept.push_back(std::move(group));
    } else if (log_level() >= kLogInfo) {
      LogLine(kLogInfo).stream()
          << "Removing empty section gruop: " << group_type_name(group->type);
    }
  }
  module.groups = std::move(kept);
}

void erase_unreferenced(FwOutMap& map) {
  std::vector<std::unique_ptr<FwOutMap::Module>> kept;
  for (auto& module : map.modules) {
    if (is_referenced(*module)) {
      module->cfg_offset = map.mod_cfg_total;
      map.mod_cfg_total += module->mod_cfg.size();
      kept.push_back(std::move(module));
    } else if (log_level() >= kLogWarning) {
      LogLine(kLogWarning).stream()
          << "Erasing unreferenced module " << module->name;
    }
  }
  map.modules = std::move(kept);
}

std::uint32_t group_pages(const Group& group) {
  const auto last =
      std::find_if(group.sections.rbegin(), group.sections.rend(),
                   [](const auto& section) { return section->header; });
  if (last == group.sections.rend()) return 0;
  const Header& header = *(*last)->header;
  const std::uint32_t span =
      header.lma - load_address(group) + (kPageSize - 1) + header.size;
  return span / kPageSize;
}

std::uint32_t load_address(const Section& section) {
  return section.header != nullptr ? section.header->lma
                                   : std::numeric_limits<std::uint32_t>::max();
}

std::uint32_t load_address(const Group& group) {
  return group.sections.empty() ? std::numeric_limits<std::uint32_t>::max()
                                : load_address(*group.sections.front());
}

const char* group_type_name(std::uint32_t type) {
  switch (type) {
    case Group::kText:
      return ".text";
    case Group::kRodata:
      return ".rodata";
    case Group::kBss:
      return ".bss";
    default:
      return "Unknown";
  }
}

}  // namespace tova_fw_builder
