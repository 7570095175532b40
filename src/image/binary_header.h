// image/binary_header.h
// Writes the binary header with its tables: image/records/binary_header.h. Only
// its place in the output differs between the generations.
#pragma once

#include <cstdint>
#include <ostream>

#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Bytes of the header, its module entries and its module configurations. The
// symbol table, which is written behind them, takes no part in any size.
std::uint64_t manifest_size(const FwOutMap& map);

// Writes the header with its tables at the stream's position and logs them.
// `base_offset` is the distance between offsets in the binary and those at
// which the loader will find its contents. The map's `image_end`, file offsets
// and hashes are taken as they stand: zero before the contents are written.
//
// Throws std::runtime_error
//   "preload page count cannot be computed - no modules",
//   "preload size not aligned to page size" if image_end + base_offset (taken
//     in 64 bits) is 0 or no whole number of pages, both before anything is
//     written,
//   and what make_module_entry throws, which leaves the table cut short.
void write_binary_header(const FwOutMap& map, std::ostream& stream,
                         std::uint32_t base_offset);

}  // namespace tova_fw_builder
