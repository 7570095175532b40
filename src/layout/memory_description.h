// layout/memory_description.h
// The XML file that says how much of each memory class the firmware takes.
#pragma once

#include <string>

#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Writes the file `out_dir`, a path separator, `binary_name`, ".xml" for a
// connected map. docs/file-formats.md has its form, and what counts in a class.
// A file that can't be written is passed over in silence; the log is the same.
//
// Throws std::runtime_error "Highest address H is lower than lowest L address
// found" and "Highest address H is lower than memory class NAME base address",
// numbers in decimal; the file then stays as far as it got.
void write_memory_description(const FwOutMap& map, const std::string& out_dir,
                              const std::string& binary_name);

// The section with the highest or lowest address that counts in the class, null
// if none; the first one of equals. The map keeps the section. As `dyn_mem`
// sections join in wherever they lie, it may be outside of the class.
const FwOutMap::Section* highest_by_vma(const FwOutMap& map,
                                        const FwOutMap::MemoryClass& area);
const FwOutMap::Section* highest_by_lma(const FwOutMap& map,
                                        const FwOutMap::MemoryClass& area);
const FwOutMap::Section* lowest_by_vma(const FwOutMap& map,
                                       const FwOutMap::MemoryClass& area);
const FwOutMap::Section* lowest_by_lma(const FwOutMap& map,
                                       const FwOutMap::MemoryClass& area);

}  // namespace tova_fw_builder
