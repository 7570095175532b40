// driver/ground/byte_dump.h
// Printing of byte arrays: the plain dump of the log, and the C array form
// that the log and the C source output share.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <span>
#include <string>
#include <string_view>

namespace tova_fw_builder {

// Bytes for printing, not owned. A null `data` prints like a length of zero.
//
// Plain form: label, newline, `indent`; then each byte as two lower-case hex
// digits and one blank; behind every 16th byte, the last one too, a newline and
// `indent` again. The base of the stream's numbers is not touched by it; the C
// array form sets decimal.
struct ByteDump {
  const std::uint8_t* data = nullptr;
  std::size_t length = 0;
  std::string label;
  bool c_array = false;
  std::string indent = {};
};

std::ostream& operator<<(std::ostream& out, const ByteDump& dump);

// The C array form in pieces (docs/file-formats.md, "C array"), for arrays that
// don't fit in memory. `first` is the index in the array of bytes[0], `length`
// the array's length.
void write_c_array_head(std::ostream& out, std::string_view label,
                        std::uint64_t length);
void write_c_array_bytes(std::ostream& out, std::span<const std::uint8_t> bytes,
                         std::uint64_t first, std::uint64_t length);
void write_c_array_tail(std::ostream& out);

}  // namespace tova_fw_builder
