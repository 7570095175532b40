// Most of these are asked of groups that are not bound or sorted yet, too: what
// has no header has the highest address there is.
#include "layout/section_group.h"

#include <algorithm>
#include <limits>

namespace tova_fw_builder {

using Section = FwOutMap::Section;
using Group = FwOutMap::SectionGroup;

bool is_resolved(const Section& section) {
  return section.header != nullptr &&
         (section.replacement == nullptr || is_resolved(*section.replacement));
}

bool is_complete(const Group& group) {
  return std::ranges::all_of(group.sections, [](const auto& section) {
    return section->optional || is_resolved(*section);
  });
}

std::uint32_t load_address(const Section& section) {
  return section.header != nullptr ? section.header->lma
                                   : std::numeric_limits<std::uint32_t>::max();
}

std::uint32_t load_address(const Group& group) {
  return group.sections.empty() ? std::numeric_limits<std::uint32_t>::max()
                                : load_address(*group.sections.front());
}

void sort_by_load_address(Group& group) {
  // Stable: sections of no size may share an address with the next one.
  std::ranges::stable_sort(group.sections, {}, [](const auto& section) {
    return load_address(*section);
  });
}

std::uint32_t group_pages(const Group& group) {
  const auto last =
      std::find_if(group.sections.rbegin(), group.sections.rend(),
                   [](const auto& section) { return section->header; });
  if (last == group.sections.rend()) return 0;
  const FwImageMap::SectionHeader& header = *(*last)->header;
  // Wraps at 32 bits, like all sums of addresses.
  const std::uint32_t span =
      header.lma - load_address(group) + (kPageSize - 1) + header.size;
  return span / kPageSize;
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
