// What modules take. Gaps and padding go by load addresses, by which the image
// is laid out.
#include <algorithm>

#include "layout/segment.h"
#include "memory_map/coverage.h"
#include "memory_map/measures.h"

namespace tova_fw_builder {
namespace {

using Group = FwOutMap::SectionGroup;

void measure_group(const Group& group, MemoryMap::Module& module) {
  std::vector<Span> spans;
  std::uint64_t size = 0;
  for (const auto& section : group.sections) {
    if (section->header == nullptr) continue;
    spans.push_back(span_of(section->header->lma, section->header->size));
    size += section->header->size;
  }
  if (spans.empty()) return;
  (group.type == Group::kText     ? module.text
   : group.type == Group::kRodata ? module.rodata
                                  : module.bss) += size;
  const std::uint64_t begin = spans.front().begin;
  const std::uint64_t end = std::ranges::max(spans, {}, &Span::end).end;
  const std::uint64_t pages = group_pages(group);
  module.gaps += end - begin - Coverage(spans).count({begin, end});
  module.padding += std::max(begin + pages * kPageSize, end) - end;
  module.pages += pages;
  module.packed_pages += std::min(pages, (size + kPageSize - 1) / kPageSize);
}

}  // namespace

void measure_modules(const FwOutMap& bound, MemoryMap& map) {
  for (const auto& from : bound.modules) {
    MemoryMap::Module module;
    module.name = from->name;
    module.uuid = from->uuid.text();
    std::ranges::transform(module.uuid, module.uuid.begin(), [](char c) {
      return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
    });
    module.built_in = from->load_type == FwOutMap::Module::kBuiltIn;
    for (const auto& group : from->groups) measure_group(*group, module);
    map.modules.push_back(std::move(module));
  }
}

}  // namespace tova_fw_builder
