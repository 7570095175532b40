// layout/segment_flags.h
// The word of flags that a segment has in the image
// (docs/file-formats.md, "Segment").
#pragma once

#include <cstdint>

#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Bits 0 to 5, by the flags of a section.
std::uint32_t flags_of(const FwImageMap::SectionHeader& header);

// Puts type, pages and on-demand into the group's `flags`; takes the load bit
// away if the module isn't loadable.
void finish_flags(FwOutMap::SectionGroup& group, bool loadable);

}  // namespace tova_fw_builder
