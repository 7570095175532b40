#include "memory_map/address_coverage.h"

#include <algorithm>

namespace tova_fw_builder {

AddressCoverage::AddressCoverage(std::vector<AddressSpan> spans) {
  std::ranges::sort(spans, {}, &AddressSpan::begin);
  for (const AddressSpan& span : spans) {
    if (span.begin == span.end) continue;
    if (stretches_.empty()) {
      stretches_.push_back({span, 0});
      continue;
    }
    Stretch& last = stretches_.back();
    if (span.begin <= last.span.end) {
      last.span.end = std::max(last.span.end, span.end);
    } else {
      stretches_.push_back(
          {span, last.covered_before + last.span.end - last.span.begin});
    }
  }
}

std::uint64_t AddressCoverage::count(AddressSpan span) const {
  return span.begin < span.end ? count_below(span.end) - count_below(span.begin)
                               : 0;
}

std::vector<AddressSpan> AddressCoverage::uncovered(AddressSpan span) const {
  std::vector<AddressSpan> found;
  const auto first = std::ranges::upper_bound(
      stretches_, span.begin, {}, [](const Stretch& s) { return s.span.end; });
  for (auto at = first; at != stretches_.end(); ++at) {
    if (at->span.begin >= span.end) break;
    if (span.begin < at->span.begin) {
      found.push_back({span.begin, at->span.begin});
    }
    span.begin = at->span.end;
  }
  if (span.begin < span.end) found.push_back(span);
  return found;
}

std::uint64_t AddressCoverage::count_below(std::uint64_t address) const {
  const auto behind = std::ranges::lower_bound(
      stretches_, address, {}, [](const Stretch& s) { return s.span.begin; });
  if (behind == stretches_.begin()) return 0;
  const Stretch& last = *(behind - 1);
  return last.covered_before + std::min(address, last.span.end) -
         last.span.begin;
}

}  // namespace tova_fw_builder
