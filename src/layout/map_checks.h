// layout/map_checks.h
// Consistency checks of the bound map. None changes an address.
#pragma once

#include "input_map/fw_image_map.h"
#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Holds .data and the sections whose names end in ".guard" to `max_data`, and
// ".guard" itself to nothing. Warns unless `max_data` is 0. Throws what
// FwImageMap::check_section_size throws.
void check_sizes(const FwOutMap& map, const FwImageMap& image_map);

// Notes in the log a group of allocation alone in front of the last other one;
// then check_uuid_tails. Does nothing for generation 1.5 and unknown ones.
void check_alloc_only(const FwOutMap& map);

// Throws std::runtime_error "UUID last 6 bytes is not unique for module " and
// the name of the later of two modules.
void check_uuid_tails(const FwOutMap& map);

}  // namespace tova_fw_builder
