// inspect/binary_tables.h
// The binary header with the tables behind it, the same in all generations.
#pragma once

#include <cstdint>
#include <string>

#include "inspect/byte_source.h"
#include "inspect/inspected.h"

namespace tova_fw_builder {

// Adds `header`, `modules`, `symbols` and, for the list of bytes alone,
// `symbol_table` to the root, and the problems in them. Yields the end of the
// tables: where the next byte stands that they don't take.
std::uint64_t decode_binary_tables(const ByteSource& source,
                                   std::uint64_t offset, Inspected& out);

// Adds `symbols` and `symbol_table`, the part behind the configurations, as far
// as it stands below `limit`.
std::uint64_t decode_symbol_table(const ByteSource& source,
                                  std::uint64_t offset, std::uint64_t limit,
                                  Inspected& out);

// Name and version out of the decoded header: "TOVADEMO 1.4.0.27".
std::string image_name(const Field& root);

}  // namespace tova_fw_builder
