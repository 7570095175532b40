// image/symbol_table.h
// The symbols that an image exports to modules loaded later, as the last table
// of the binary header.
#pragma once

#include <ostream>
#include <span>

#include "image/records/binary_header.h"
#include "input_map/fw_image_map.h"

namespace tova_fw_builder {

// Writes the count of `symbols` (4 bytes), one record (12 bytes) for each
// symbol that lies in a segment of `entries`, the length of the string area
// (4 bytes) and the names of the written records, each with its zero byte. A
// segment reaches from its vma to vma + pages, which wraps at 32 bits; the
// first match counts.
//
// A symbol outside all segments is skipped with a warning, yet it stays in the
// count and in the base of the name offsets. Readers in the field expect that.
void write_symbol_table(std::ostream& stream,
                        std::span<const FwImageMap::Symbol> symbols,
                        std::span<const ModuleEntry> entries);

}  // namespace tova_fw_builder
