// image/symbol_table.h
// The symbols that an image exports to modules loaded later, as the last table
// of the binary header.
#pragma once

#include <ostream>
#include <span>

#include "image/records/binary_header.h"
#include "input_map/fw_image_map.h"

namespace tova_fw_builder {

// Writes the symbols that lie in a segment of `entries`, the first that
// matches; for another one it warns.
void write_symbol_table(std::ostream& stream,
                        std::span<const FwImageMap::Symbol> symbols,
                        std::span<const ModuleEntry> entries);

}  // namespace tova_fw_builder
