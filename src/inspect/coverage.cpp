#include "inspect/coverage.h"

#include <algorithm>

namespace tova_fw_builder {

std::vector<Span> Coverage::take(Span span) {
  std::vector<Span> freed;
  if (span.offset >= length_ || span.length == 0) return freed;
  std::uint64_t at = span.offset;
  const std::uint64_t end = at + std::min(span.length, length_ - span.offset);
  std::uint64_t whole_begin = at;
  std::uint64_t whole_end = end;

  // From the last taken span that begins at or ahead of this one.
  auto next = taken_.upper_bound(at);
  if (next != taken_.begin() && std::prev(next)->second >= at) --next;
  while (next != taken_.end() && next->first <= end) {
    if (at < next->first) freed.push_back({at, next->first - at});
    at = std::max(at, next->second);
    whole_begin = std::min(whole_begin, next->first);
    whole_end = std::max(whole_end, next->second);
    next = taken_.erase(next);
  }
  if (at < end) freed.push_back({at, end - at});
  taken_[whole_begin] = whole_end;
  return freed;
}

std::vector<Span> Coverage::gaps() const {
  std::vector<Span> gaps;
  std::uint64_t at = 0;
  for (const auto& [begin, end] : taken_) {
    if (at < begin) gaps.push_back({at, begin - at});
    at = end;
  }
  if (at < length_) gaps.push_back({at, length_ - at});
  return gaps;
}

}  // namespace tova_fw_builder
