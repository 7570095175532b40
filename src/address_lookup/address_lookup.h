// address_lookup/address_lookup.h
// What a run address belongs to.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "address_lookup/elf_places.h"
#include "address_lookup/image_segments.h"
#include "address_lookup/range_index.h"

namespace tova_fw_builder {

// A text and how far behind its start the address is; empty if there is none.
struct NamedOffset {
  std::string_view name = {};
  std::uint64_t offset = 0;
};

// The texts are those of the lookup.
struct AddressOwner {
  std::string_view module = {};  // empty without a file that tells it
  NamedOffset segment = {};
  NamedOffset section = {};   // empty without ELFs, and for padding
  std::string_view elf = {};  // of the section
  NamedOffset symbol = {};
  NamedOffset file = {};  // with the place of the byte; empty for zeroed data
};

class AddressLookup {
 public:
  AddressLookup(std::vector<ImageSegment> segments, ElfPlaces elfs);

  bool knows_files() const { return !segments_.empty(); }
  bool knows_elfs() const { return !elfs_.sections().empty(); }

  // All that it belongs to. A section goes with the segment that it lies in;
  // where several lie over several, each is told by itself. What a built-in
  // module has isn't told of the module that carries its bytes, too.
  std::vector<AddressOwner> owners_of(std::uint32_t address) const;

 private:
  std::vector<const ImageSegment*> segments_at(std::uint32_t address) const;
  NamedOffset file_place(std::uint32_t address) const;

  std::vector<ImageSegment> segments_;
  ElfPlaces elfs_;
  RangeIndex segment_index_;
  RangeIndex section_index_;
};

}  // namespace tova_fw_builder
