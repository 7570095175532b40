// The first six bits tell what one section of the segment is, all others what
// the definition says of it.
#include "layout/segment_flags.h"

#include <utility>

#include "layout/section_group.h"

namespace tova_fw_builder {

namespace {

using Group = FwOutMap::SectionGroup;

constexpr unsigned kTypeShift = 8;
constexpr std::uint32_t kTypeMask = 0xFu << kTypeShift;
constexpr unsigned kPagesShift = 16;
constexpr std::uint32_t kPagesMask = 0xFFFFu << kPagesShift;

}  // namespace

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
