// inspect/reserved_bytes.h
#pragma once

#include <cstdint>

#include "inspect/byte_source.h"
#include "inspect/inspected.h"

namespace tova_fw_builder {

// Adds what no field of the tree has as padding, and a problem for each
// reserved field and each piece of padding that isn't zero. Of the padding as
// many bytes are looked at as are `tested`.
void check_reserved_bytes(const ByteSource& source, std::uint64_t tested,
                          Inspected& out);

}  // namespace tova_fw_builder
