// Most of these are asked of groups that are not bound or sorted yet, too: what
// has no header has the highest address there is.
#include "layout/section_group.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace tova_fw_builder {

using Section = FwOutMap::Section;
using Group = FwOutMap::SectionGroup;

namespace {

constexpr unsigned kTypeShift = 8;
constexpr std::uint32_t kTypeMask = 0xFu << kTypeShift;
constexpr unsigned kPagesShift = 16;
constexpr std::uint32_t kPagesMask = 0xFFFFu << kPagesShift;

}  // namespace

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
  // In the order of Group::Type.
  constexpr const char* kNames[] = {".text", ".rodata", ".bss"};
  return type < std::size(kNames) ? kNames[type] : "Unknown";
}

std::uint32_t flags_of(const FwImageMap::SectionHeader& header) {
  const std::pair<bool, std::uint32_t> bits[] = {
      {header.contents, Group::kContents}, {header.alloc, Group::kAlloc},
      {header.load, Group::kLoad},         {header.readonly, Group::kReadonly},
      {header.code, Group::kCode},         {header.data, Group::kData}};
  std::uint32_t flags = 0;
  for (const auto& [is_set, bit] : bits) {
    if (is_set) flags |= bit;
  }
  return flags;
}

void finish_flags(Group& group, bool loadable) {
  group.flags &= ~(kTypeMask | kPagesMask | Group::kOnDemand);
  group.flags |= group.type << kTypeShift & kTypeMask;
  group.flags |= group_pages(group) << kPagesShift;
  // The section table can't tell, so the definition alone decides.
  if (group.on_demand) group.flags |= Group::kOnDemand;
  // The pages of a built-in module come with those of another one.
  if (!loadable) group.flags &= ~std::uint32_t{Group::kLoad};
}

}  // namespace tova_fw_builder
