// lint/writing.h
// What the builder does with a bound map: which bytes go where. Nothing is
// written here.
#pragma once

#include <cstdint>
#include <vector>

#include "layout/records/out_map.h"

namespace tova_fw_builder {

struct WrittenGroup {
  const FwOutMap::Module* module = nullptr;
  const FwOutMap::SectionGroup* group = nullptr;
  // The zeros ahead of it, in an addon, and the section that they are counted
  // from: the one written last, or null.
  std::uint32_t pad = 0;
  const FwOutMap::Section* behind = nullptr;
  // From the start of the image, the signer's room included.
  std::uint64_t offset = 0;
};

// Zeros ahead of a section, as many as its load address is behind the end of
// the one written last.
struct WrittenGap {
  const FwOutMap::Section* behind = nullptr;
  const FwOutMap::Section* section = nullptr;
  std::uint32_t zeros = 0;
};

struct Writing {
  std::vector<WrittenGroup> groups;  // in the order of the writing
  std::vector<WrittenGap> gaps;      // those that aren't empty
  std::uint64_t end = 0;             // of the image; of the base's file in 1.5
};

// For a map that connect_and_check took.
Writing plan_writing(const FwOutMap& bound);

}  // namespace tova_fw_builder
