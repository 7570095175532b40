// Sections by their run addresses, each with its first owner, and what of them
// lies on one another.
#include <algorithm>
#include <limits>
#include <tuple>
#include <unordered_map>

#include "memory_map/address_coverage.h"
#include "memory_map/measures.h"

namespace tova_fw_builder {
namespace {

using Header = FwImageMap::SectionHeader;

// Sections can lie on many others: a list that nobody could read mustn't take
// all memory.
constexpr std::size_t kMaxOverlaps = 10'000;

struct Owner {
  std::string name;
  bool is_built_in;
};
using Owners = std::unordered_map<const Header*, Owner>;

// The first owner stays, unless a built-in module comes.
void add_owner(Owners& owners, const Header* header, const Owner& owner) {
  constexpr auto kNoTable = std::numeric_limits<std::uint32_t>::max();
  if (header == nullptr || header->index == kNoTable) return;
  const auto [place, is_new] = owners.try_emplace(header, owner);
  if (!is_new && owner.is_built_in && !place->second.is_built_in) {
    place->second = owner;
  }
}

}  // namespace

void measure_sections(const FwOutMap& bound, MemoryMap& map) {
  Owners owners;
  for (const auto& module : bound.modules) {
    const Owner owner = {module->name,
                         module->load_type == FwOutMap::Module::kBuiltIn};
    for (const auto& group : module->groups) {
      for (const auto& section : group->sections) {
        add_owner(owners, section->header.get(), owner);
      }
    }
  }
  for (const auto& section : bound.dyn_mem) {
    add_owner(owners, section->header.get(), {kDynMemOwner, false});
  }
  for (const auto& [header, owner] : owners) {
    map.sections.push_back(
        {header->name, owner.name, header->vma, header->size});
  }
  std::ranges::sort(map.sections, [](const auto& a, const auto& b) {
    return std::tie(a.address, a.name) < std::tie(b.address, b.name);
  });
}

void find_overlaps(MemoryMap& map) {
  std::vector<std::uint32_t> order;
  for (std::uint32_t i = 0; i < map.sections.size(); ++i) {
    if (map.sections[i].size != 0) order.push_back(i);
  }
  if (map.hw_buf.size != 0) {
    const auto behind = std::ranges::upper_bound(
        order, map.hw_buf.address, {},
        [&map](std::uint32_t i) { return map.sections[i].address; });
    order.insert(behind, MemoryMap::kIsHardwareBuffer);
  }
  std::vector<std::uint32_t> open;  // those that reach to the next one
  for (const std::uint32_t number : order) {
    const AddressSpan span = span_of(section_at(map, number));
    std::erase_if(open, [&](std::uint32_t other) {
      return span_of(section_at(map, other)).end <= span.begin;
    });
    for (const std::uint32_t other : open) {
      if (map.overlaps.size() == kMaxOverlaps) {
        map.has_more_overlaps = true;
        return;
      }
      const AddressSpan first = span_of(section_at(map, other));
      map.overlaps.push_back({other, number, span.begin,
                              std::min(first.end, span.end) - span.begin});
    }
    open.push_back(number);
  }
}

}  // namespace tova_fw_builder
