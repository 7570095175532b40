// inspect/compare/compare_lines.h
#pragma once

#include <vector>

#include "inspect/byte_source.h"
#include "inspect/compare/change.h"

namespace tova_fw_builder {

// The lines in which two short texts differ, such as memory descriptions, at
// "lines[N]", counted from 1; lines that one side alone has are added or
// removed. Empty if one of the two is no text, is long or may be private, if
// many lines differ, or none does; lines that differ in folders alone don't
// count there.
std::vector<Change> compare_lines(const ByteSource& old_source,
                                  const ByteSource& new_source);

}  // namespace tova_fw_builder
