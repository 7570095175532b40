#include "address_lookup/address_lookup.h"

#include <algorithm>
#include <utility>

namespace tova_fw_builder {
namespace {

template <typename Owners>
RangeIndex index_of(const Owners& owners) {
  std::vector<AddressRange> ranges;
  ranges.reserve(owners.size());
  for (const auto& owner : owners) ranges.push_back(owner.range);
  return RangeIndex(ranges);
}

}  // namespace

AddressLookup::AddressLookup(std::vector<ImageSegment> segments, ElfPlaces elfs)
    : segments_(std::move(segments)),
      elfs_(std::move(elfs)),
      segment_index_(index_of(segments_)),
      section_index_(index_of(elfs_.sections())) {}

// The built-in ones alone, if there are any.
std::vector<const ImageSegment*> AddressLookup::segments_at(
    std::uint32_t address) const {
  std::vector<const ImageSegment*> found;
  for (const std::uint32_t number : segment_index_.at(address)) {
    found.push_back(&segments_[number]);
  }
  if (std::ranges::any_of(found, &ImageSegment::built_in)) {
    std::erase_if(found,
                  [](const auto* segment) { return !segment->built_in; });
  }
  return found;
}

// Of a built-in segment: in the module that carries it.
NamedOffset AddressLookup::file_place(std::uint32_t address) const {
  for (const std::uint32_t number : segment_index_.at(address)) {
    const ImageSegment& segment = segments_[number];
    if (segment.file.empty()) continue;
    return {segment.file, segment.file_offset + address - segment.range.begin};
  }
  return {};
}

std::vector<AddressOwner> AddressLookup::owners_of(
    std::uint32_t address) const {
  std::vector<AddressOwner> owners;
  const auto add_segment = [&](const ImageSegment& segment,
                               AddressOwner owner) {
    owner.module = segment.module;
    owner.segment = {segment.type, address - segment.range.begin};
    if (segment.built_in) {
      owner.file = file_place(address);
    } else if (!segment.file.empty()) {
      owner.file = {segment.file,
                    segment.file_offset + address - segment.range.begin};
    }
    owners.push_back(owner);
  };

  auto alone = segments_at(address);
  const auto segments = alone;
  const auto sections = section_index_.at(address);
  const bool is_clear = segments.size() < 2 || sections.size() < 2;
  for (const std::uint32_t number : sections) {
    const ElfSection& section = elfs_.sections()[number];
    AddressOwner owner;
    owner.section = {section.name, address - section.range.begin};
    owner.elf = section.elf;
    if (const ElfSymbol* symbol = ElfPlaces::symbol_at(section, address)) {
      owner.symbol = {symbol->name, address - symbol->address};
    }
    bool is_told = false;
    for (const ImageSegment* segment : segments) {
      if (!is_clear || !segment->range.has(section.range)) continue;
      add_segment(*segment, owner);
      std::erase(alone, segment);
      is_told = true;
    }
    if (!is_told) owners.push_back(owner);
  }
  for (const ImageSegment* segment : alone) add_segment(*segment, {});
  return owners;
}

}  // namespace tova_fw_builder
