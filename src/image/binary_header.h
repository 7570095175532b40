// image/binary_header.h
// Writes the binary header with its tables: image/records/binary_header.h. Only
// its place in the output differs between the generations.
#pragma once

#include <cstdint>
#include <ostream>

#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Bytes of the header, its module entries and its configurations; the symbol
// table takes no part in any size.
std::uint64_t manifest_size(const FwOutMap& map);

// Writes the header with its tables at the stream's position and logs them.
// `base_offset` is the distance between offsets in the binary and those at
// which the loader will find its contents.
//
// Throws std::runtime_error "preload page count cannot be computed - no
// modules" or "preload size not aligned to page size", both before anything is
// written, and what make_module_entry throws, which cuts the table short.
void write_binary_header(const FwOutMap& map, std::ostream& stream,
                         std::uint32_t base_offset);

}  // namespace tova_fw_builder
