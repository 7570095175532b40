// layout/section_replacement.h
// A section that takes the room of another one (docs/definition-language.md,
// "Groups of sections").
#pragma once

#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Finds the header of the section's replacement, if it has one, and logs a
// warning if there is none.
void attach_replacement(FwOutMap::Section& section,
                        const FwImageMap& image_map);

// The header whose bytes take the section's room, of a reference with a header.
// Throws std::runtime_error "Replacement section too large to fit into the
// placeholder" and "Section replacement header NAME not found".
const FwImageMap::SectionHeader& choose_source(
    const FwOutMap::Section& section);

}  // namespace tova_fw_builder
