// layout/kelp15_file_base.h
// What generation 1.5 alone does with addon modules: each stands in a file of
// its own.
#pragma once

#include <cstdint>

#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Whether the module goes to a file of its own. False in other generations.
bool has_own_file(const FwOutMap& map, const FwOutMap::Module& module);

// How far the base of file offsets moves on behind the module, since those of
// the next one begin at zero in its own file. 0 in other generations.
std::uint32_t file_base_step(const FwOutMap& map,
                             const FwOutMap::Module& module);

}  // namespace tova_fw_builder
