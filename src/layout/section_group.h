// layout/section_group.h
// What can be asked of a group of sections as the run of memory that it makes.
#pragma once

#include <cstdint>

#include "layout/records/out_map.h"

namespace tova_fw_builder {

// True if the reference has a header and its replacement, if any, too.
bool is_resolved(const FwOutMap::Section& section);

// True if every reference is optional or resolved. An optional one passes even
// with a header whose replacement is missing.
bool is_complete(const FwOutMap::SectionGroup& group);

// Of a group that of its first reference. FFFFFFFF without a header: such a one
// sorts last.
std::uint32_t load_address(const FwOutMap::Section& section);
std::uint32_t load_address(const FwOutMap::SectionGroup& group);

// Puts the references in the order of their load addresses.
void sort_by_load_address(FwOutMap::SectionGroup& group);

// The pages from the first reference's load address, wherever in a page that
// is, to the end of the last one with a header; 0 if none has a header.
std::uint32_t group_pages(const FwOutMap::SectionGroup& group);

// Bits 0 to 5 of a segment's flags (docs/file-formats.md, "Segment"), by those
// of a section.
std::uint32_t flags_of(const FwImageMap::SectionHeader& header);

// Puts type, pages and on-demand into the group's `flags`; takes the load bit
// away if the module isn't loadable.
void finish_flags(FwOutMap::SectionGroup& group, bool loadable);

// ".text", ".rodata", ".bss", else "Unknown".
const char* group_type_name(std::uint32_t type);

}  // namespace tova_fw_builder
