// inspect/bytes.h
// The file as the list of its byte ranges, without gap or overlap: nothing
// hides.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "inspect/inspected.h"

namespace tova_fw_builder {

struct ByteRange {
  std::uint64_t offset = 0;
  std::uint64_t length = 0;
  std::string path;              // of the field: "modules[2].segments[0].vma"
  const Field* field = nullptr;  // in the tree
};

// In order, from 0 to the file's length. Where fields share bytes, which only
// those of a damaged file do, the one ahead in the tree has them; contents get
// what other fields leave. An empty file has none.
std::vector<ByteRange> byte_ranges(const Inspected& inspected);

// A line for each range: offset, length, path and value.
void print_byte_ranges(std::ostream& out, const Inspected& inspected);

// Prints "ranges": [{offset, length, path, value}], a range a line, as
// print_member does; the value of contents and padding is null.
void print_ranges_member(std::ostream& out, const Inspected& inspected,
                         std::size_t indent);

}  // namespace tova_fw_builder
