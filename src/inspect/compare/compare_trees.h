// inspect/compare/compare_trees.h
#pragma once

#include <vector>

#include "inspect/byte_source.h"
#include "inspect/compare/change.h"
#include "inspect/inspected.h"

namespace tova_fw_builder {

// A file that is taken apart.
struct Side {
  const ByteSource& source;
  Inspected inspected;
};

// What differs between two files of one format, in the order of the tree: the
// fields' values, and the bytes behind them as far as the values don't tell
// them. Every byte of both files is compared; where the fields of a damaged
// file share bytes without end, byte by byte. Empty for equal files.
//
// No more than ten thousand changes are kept, and then one that says so.
std::vector<Change> compare_trees(Side old_side, Side new_side);

}  // namespace tova_fw_builder
