// image/binary_header.h
// Writes the binary header with its tables, image/records/binary_header.h, each
// in a source of its own. Only its place in the output differs between the
// generations.
#pragma once

#include <cstdint>
#include <ostream>
#include <span>

#include "image/records/binary_header.h"
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

// Writes the exported symbols that lie in a segment of `entries`, the first
// that matches; for another one it warns.
void write_symbol_table(std::ostream& stream,
                        std::span<const FwImageMap::Symbol> symbols,
                        std::span<const ModuleEntry> entries);

}  // namespace tova_fw_builder
