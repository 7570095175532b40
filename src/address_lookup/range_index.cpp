#include "address_lookup/range_index.h"

#include <algorithm>

namespace tova_fw_builder {

RangeIndex::RangeIndex(const std::vector<AddressRange>& ranges) {
  for (const AddressRange& range : ranges) {
    entries_.push_back({range, static_cast<std::uint32_t>(entries_.size()), 0});
  }
  std::ranges::stable_sort(
      entries_, {}, [](const Entry& entry) { return entry.range.begin; });
  std::uint64_t furthest = 0;
  for (Entry& entry : entries_) {
    furthest = std::max(furthest, entry.range.end);
    entry.furthest = furthest;
  }
}

std::vector<std::uint32_t> RangeIndex::at(std::uint64_t address) const {
  std::vector<std::uint32_t> numbers;
  auto behind = std::ranges::upper_bound(
      entries_, address, {},
      [](const Entry& entry) { return entry.range.begin; });
  while (behind != entries_.begin() && (behind - 1)->furthest > address) {
    --behind;
    if (behind->range.has(address)) numbers.push_back(behind->number);
  }
  std::ranges::reverse(numbers);
  return numbers;
}

}  // namespace tova_fw_builder
