// image/module_entry.h
// One module as the loader's table in the binary header lists it.
#pragma once

#include <cstdint>
#include <ostream>

#include "image/records/binary_header.h"
#include "layout/records/out_map.h"

namespace tova_fw_builder {

// The entry of a bound module. `file_base` is the distance between offsets in
// the file that the module was written to and those that the loader sees.
//
// Throws std::runtime_error "Non-aligned base address of section" for an
// address off the page grid in a module that isn't built in, "Non-aligned
// address of section" for such a file offset.
ModuleEntry make_module_entry(const FwOutMap::Module& module,
                              std::uint32_t file_base);

// The log form, several lines, the last one without a newline. Leaves the
// stream in hexadecimal.
void print_module_entry(std::ostream& out, const ModuleEntry& entry);

}  // namespace tova_fw_builder
