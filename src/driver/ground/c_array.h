// driver/ground/c_array.h
// Bytes as an array in C, for the log and for C sources
// (docs/file-formats.md, "C array").
#pragma once

#include <cstdint>
#include <ostream>
#include <span>
#include <string_view>

namespace tova_fw_builder {

// For printing, not owned. Sets the base of the stream's numbers to decimal.
struct CArray {
  std::string_view name;
  std::span<const std::uint8_t> bytes;
};

std::ostream& operator<<(std::ostream& out, const CArray& array);

// The same in pieces, for arrays that don't fit in memory. `first` is the index
// in the array of bytes[0], `length` the array's length.
void write_c_array_head(std::ostream& out, std::string_view name,
                        std::uint64_t length);
void write_c_array_bytes(std::ostream& out, std::span<const std::uint8_t> bytes,
                         std::uint64_t first, std::uint64_t length);
void write_c_array_tail(std::ostream& out);

}  // namespace tova_fw_builder
