// layout/group_binding.h
// Joins what the definitions name with what the linker produced.
#pragma once

#include "input_map/fw_image_map.h"
#include "layout/records/out_map.h"

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
// `flags` takes bits 0 to 5 from the first bound header with any flag; then bit
// 6 becomes the group's `on_demand`, and bit 2 is cleared if not `loadable`.
//
// Throws std::runtime_error "Double entry point defined" for an entry point
// section when the group has an entry; with `check_types` also "Invalid segment
// type" for a section without a kind and "Invalid section type" for one of
// another kind than the group's (docs/definition-language.md tells the kinds).
void attach_group(FwOutMap::SectionGroup& group, const FwImageMap& image_map,
                  bool check_types, bool loadable);

}  // namespace tova_fw_builder
