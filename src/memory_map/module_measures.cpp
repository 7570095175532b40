// What modules take, and what the image is made of. Gaps and padding go by load
// addresses, by which the image is laid out.
#include <algorithm>

#include "layout/section_group.h"
#include "memory_map/address_coverage.h"
#include "memory_map/measures.h"

namespace tova_fw_builder {
namespace {

using Group = FwOutMap::SectionGroup;

bool has_contents(const Group& group) {
  for (const auto& section : group.sections) {
    if (section->header == nullptr || !section->header->contents) continue;
    if (section->header->size != 0) return true;
  }
  return false;
}

const char* kind_of(const Group& group) {
  return group.type == Group::kText     ? "text"
         : group.type == Group::kRodata ? "rodata"
                                        : "bss";
}

void measure_group(const Group& group, MemoryMap::Module& module,
                   MemoryMap& map) {
  std::vector<AddressSpan> spans;
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
  const std::uint64_t end = std::ranges::max(spans, {}, &AddressSpan::end).end;
  const std::uint64_t pages = group_pages(group);
  const std::uint64_t pages_end = std::max(begin + pages * kPageSize, end);
  const AddressCoverage covered(std::move(spans));
  module.gaps += end - begin - covered.count({begin, end});
  module.padding += pages_end - end;
  module.pages += pages;
  module.packed_pages += std::min(pages, (size + kPageSize - 1) / kPageSize);
  if (module.built_in || !has_contents(group)) return;
  map.image.pages += pages;
  map.groups.push_back({module.name, kind_of(group),
                        static_cast<std::uint32_t>(begin), pages,
                        covered.uncovered({begin, pages_end})});
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
    for (const auto& group : from->groups) measure_group(*group, module, map);
    map.modules.push_back(std::move(module));
  }
}

}  // namespace tova_fw_builder
