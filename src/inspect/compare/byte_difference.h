// inspect/compare/byte_difference.h
#pragma once

#include "inspect/byte_source.h"
#include "inspect/compare/change.h"
#include "inspect/coverage.h"

namespace tova_fw_builder {

// What counts behind the shorter of two runs: nothing, or zeros.
enum class Behind { kNothing, kZeros };

// Compares two runs of bytes in pieces, each byte read once. What of them lies
// outside its file doesn't count.
ByteDifference compare_bytes(const ByteSource& old_source, Span old_span,
                             const ByteSource& new_source, Span new_span,
                             Behind behind = Behind::kNothing);

}  // namespace tova_fw_builder
