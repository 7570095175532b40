// Binding of groups. A missing section is no error here, only a line of the
// log: whether a module may do without it is known once all of its groups are
// bound, and is_referenced decides it.
#include <stdexcept>

#include "driver/ground/log.h"
#include "layout/passes.h"
#include "layout/section_group.h"
#include "layout/section_replacement.h"

namespace tova_fw_builder {

namespace {

using Header = FwImageMap::SectionHeader;
using Section = FwOutMap::Section;
using Group = FwOutMap::SectionGroup;

// In this order: what is both code and data counts as code. Writable data has
// no kind of its own.
std::uint32_t section_class(const Header& header) {
  if (header.code) return Group::kText;
  if (header.data) return Group::kRodata;
  if (header.alloc && !header.contents) return Group::kBss;
  throw std::runtime_error("Invalid segment type");
}

void log_missing(const Section& section) {
  if (section.optional) {
    log_info("Section header ", section.name, " not found, marked as optional");
  } else {
    log_warning("Section header ", section.name, " not found");
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
  // The first section with any flag speaks for the group, in the order of the
  // definition: the sorting comes later.
  if (group.flags == 0) group.flags = flags_of(*section.header);
  attach_replacement(section, image_map);
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
  log_detail("  Attaching headers to group ", group_type_name(group.type), " (",
             group.type, ')');
  if (group.sections.empty()) return;
  for (const auto& section : group.sections) {
    attach_section(group, *section, image_map, check_types);
  }
  if (!is_complete(group)) return;
  sort_by_load_address(group);
  finish_flags(group, loadable);
  set_entry(group);
}

}  // namespace tova_fw_builder
