// layout/group_binding.h
// Joins what the definitions name with what the linker produced, one group of
// sections at a time, and takes out what isn't there.
#pragma once

#include <cstdint>

#include "input_map/fw_image_map.h"
#include "layout/out_map.h"

namespace tova_fw_builder {

// Binds each section reference of the group, and its replacement, to the header
// of its name. A name that isn't found is logged: as a warning, or as a note if
// the reference is optional.
//
// If every reference that isn't optional was bound, the group is sorted by load
// address (stable; references without a header last) and gets its `flags`,
// page count included, and the `entry` of its entry point section. Otherwise
// its order and what it has of `flags` stay.
//
// `flags` takes bits 0 to 6 from the first bound header with any flag; then bit
// 6 becomes the group's `on_demand`, and bit 2 is cleared if not `loadable`,
// which says that the module isn't built in.
//
// With `check_types` the kind of each section must be that of the group: code
// for .text, data (writable or not) for .rodata, allocated without contents for
// .bss. Throws std::runtime_error "Invalid segment type" for a section of no
// kind, "Invalid section type" for another kind; "Double entry point defined"
// for an entry point section when the group has an entry. The kind of a
// replacement is never checked.
void attach_group(FwOutMap::SectionGroup& group, const FwImageMap& image_map,
                  bool check_types, bool loadable);

// True if the reference has a header and its replacement, if any, too.
bool is_resolved(const FwOutMap::Section& section);

// True if every reference is optional or resolved. An optional one passes even
// with a header whose replacement is missing.
bool is_complete(const FwOutMap::SectionGroup& group);

// Drops the optional references without a header; logs a note for each.
void remove_optional(FwOutMap::SectionGroup& group);

// Drops the groups without a reference; logs a note for each.
void remove_empty_groups(FwOutMap::Module& module);

// Drops the modules for which is_referenced is false, each with a warning, and
// numbers the configurations of those that stay: `cfg_offset`, and
// `mod_cfg_total` of the map. Throws what is_referenced throws.
void erase_unreferenced(FwOutMap& map);

// The pages from the first reference's load address, wherever in a page that
// is, to the end of the last one with a header; 0 if none has a header. All
// arithmetic wraps at 32 bits.
std::uint32_t group_pages(const FwOutMap::SectionGroup& group);

// The load address of the reference, or of the group's first one; FFFFFFFF
// without a header, or without a reference.
std::uint32_t load_address(const FwOutMap::Section& section);
std::uint32_t load_address(const FwOutMap::SectionGroup& group);

// ".text", ".rodata", ".bss", else "Unknown".
const char* group_type_name(std::uint32_t type);

}  // namespace tova_fw_builder
