// driver/ground/byte_dump.h
// Bytes as the log prints them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string_view>

namespace tova_fw_builder {

// Bytes for printing, and the texts around them, not owned. A null `data`
// prints like a length of zero.
//
// Label, newline, `indent`; then each byte as two lower-case hex digits and one
// blank; behind every 16th byte, the last one too, a newline and `indent`
// again. The base of the stream's numbers is not touched by it.
struct ByteDump {
  const std::uint8_t* data = nullptr;
  std::size_t length = 0;
  std::string_view label;
  std::string_view indent = {};
};

std::ostream& operator<<(std::ostream& out, const ByteDump& dump);

}  // namespace tova_fw_builder
