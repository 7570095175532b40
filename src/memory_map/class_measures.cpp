// How much of each memory class is used, and what lies outside of all. Classes
// may share addresses, and a section may lie in none, in part, or in several.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <utility>
#include <vector>

#include "memory_map/address_coverage.h"
#include "memory_map/measures.h"

namespace tova_fw_builder {
namespace {

// Sections can lie in many classes: a list that nobody could read mustn't take
// all memory.
constexpr std::size_t kMaxListed = 4'000'000;

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

void measure_classes(const FwOutMap& bound, MemoryMap& map) {
  const AddressCoverage used(spans_of(map.sections));
  const Reach reach(map.sections);
  const AddressSpan buffer = span_of(map.hw_buf);
  std::vector<AddressSpan> spans;
  std::size_t listed = 0;
  for (const auto& from : bound.memory_classes) {
    const AddressSpan span = span_of(from.base, from.size);
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

}  // namespace tova_fw_builder
