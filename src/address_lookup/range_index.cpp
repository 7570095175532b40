// A tree without pointers: the root of a span of the sorted entries is its
// middle one. Each knows the furthest end below it, so that spans that end
// ahead of an address are passed over, also behind one that reaches over all.
#include "address_lookup/range_index.h"

#include <algorithm>

namespace tova_fw_builder {

RangeIndex::RangeIndex(const std::vector<AddressRange>& ranges) {
  entries_.reserve(ranges.size());
  for (const AddressRange& range : ranges) {
    entries_.push_back({range, static_cast<std::uint32_t>(entries_.size()), 0});
  }
  std::ranges::stable_sort(
      entries_, {}, [](const Entry& entry) { return entry.range.begin; });
  note_furthest(entries_);
}

std::uint64_t RangeIndex::note_furthest(std::span<Entry> span) {
  if (span.empty()) return 0;
  const std::size_t middle = span.size() / 2;
  Entry& root = span[middle];
  root.furthest = std::max({root.range.end, note_furthest(span.first(middle)),
                            note_furthest(span.subspan(middle + 1))});
  return root.furthest;
}

void RangeIndex::find(std::span<const Entry> span, std::uint64_t address,
                      std::vector<std::uint32_t>& numbers) {
  while (!span.empty()) {
    const std::size_t middle = span.size() / 2;
    const Entry& root = span[middle];
    if (root.furthest <= address) return;
    find(span.first(middle), address, numbers);
    if (root.range.begin > address) return;
    if (root.range.has(address)) numbers.push_back(root.number);
    span = span.subspan(middle + 1);
  }
}

std::vector<std::uint32_t> RangeIndex::at(std::uint64_t address) const {
  std::vector<std::uint32_t> numbers;
  find(entries_, address, numbers);
  return numbers;
}

}  // namespace tova_fw_builder
