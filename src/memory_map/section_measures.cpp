// Sections by their run addresses, and the memory classes over them.
#include <algorithm>
#include <limits>
#include <stdexcept>
#include <tuple>
#include <unordered_map>

#include "memory_map/address_coverage.h"
#include "memory_map/measures.h"

namespace tova_fw_builder {
namespace {

using Header = FwImageMap::SectionHeader;

// Sections can lie in many classes, and on many others. These keep lists that
// nobody could read from taking all memory.
constexpr std::size_t kMaxListed = 4'000'000;
constexpr std::size_t kMaxOverlaps = 10'000;

AddressSpan span_of(const MemoryMap::Section& section) {
  return tova_fw_builder::span_of(section.address, section.size);
}

bool share(AddressSpan a, AddressSpan b) {
  return a.begin < b.end && b.begin < a.end;
}

std::vector<AddressSpan> spans_of(
    const std::vector<MemoryMap::Section>& sections) {
  std::vector<AddressSpan> spans;
  spans.reserve(sections.size());
  for (const MemoryMap::Section& section : sections) {
    spans.push_back(span_of(section));
  }
  return spans;
}

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

// The sections that can reach into a span: behind the last one that ends, with
// all before it, ahead of it, and before the first one that starts behind it.
class Reach {
 public:
  explicit Reach(const std::vector<MemoryMap::Section>& sections)
      : sections_(sections) {
    std::uint64_t end = 0;
    for (const MemoryMap::Section& section : sections) {
      end = std::max(end, span_of(section).end);
      ends_.push_back(end);
    }
  }

  // A section without a size lies where its address is.
  std::vector<std::uint32_t> sections_in(AddressSpan span) const {
    std::vector<std::uint32_t> found;
    const auto first = std::ranges::lower_bound(ends_, span.begin);
    for (auto i = static_cast<std::uint32_t>(first - ends_.begin());
         i < sections_.size() && sections_[i].address < span.end; ++i) {
      const AddressSpan own = span_of(sections_[i]);
      const bool is_point = own.begin == own.end && own.begin >= span.begin;
      if (is_point || share(own, span)) found.push_back(i);
    }
    return found;
  }

 private:
  const std::vector<MemoryMap::Section>& sections_;
  std::vector<std::uint64_t> ends_;  // the furthest one up to each section
};

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

void measure_classes(const FwOutMap& bound, MemoryMap& map) {
  const AddressCoverage used(spans_of(map.sections));
  const Reach reach(map.sections);
  const AddressSpan buffer = span_of(map.hw_buf);
  std::vector<AddressSpan> spans;
  std::size_t listed = 0;
  for (const auto& from : bound.memory_classes) {
    const AddressSpan span = tova_fw_builder::span_of(from.base, from.size);
    const AddressSpan shared = {std::max(span.begin, buffer.begin),
                                std::min(span.end, buffer.end)};
    const std::uint64_t in_buffer =
        shared.begin < shared.end ? shared.end - shared.begin : 0;
    map.classes.push_back({from.name, from.base, from.size, used.count(span),
                           in_buffer - used.count(shared),
                           reach.sections_in(span)});
    listed += map.classes.back().sections.size();
    if (listed > kMaxListed) {
      throw std::runtime_error(
          "the memory classes overlap too much: more than 4000000 times a "
          "section lies in one of them");
    }
    spans.push_back(span);
  }
  const AddressCoverage classes(std::move(spans));
  for (std::uint32_t i = 0; i < map.sections.size(); ++i) {
    const std::uint64_t inside = classes.count(span_of(map.sections[i]));
    if (inside == map.sections[i].size) continue;
    map.outside_classes.push_back({i, map.sections[i].size - inside});
  }
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
