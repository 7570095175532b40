// tools/split_command.h
// The command `split`: deals a binary out to two 64-bit memory banks.
#pragma once

#include <string>

namespace tova_fw_builder {

// Writes the two banks to `name_a` and `name_b`, each with ".bin" and with
// ".hex" (docs/file-formats.md, "Memory files").
//
// Throws std::runtime_error "Failed to open file: " or "Cannot tell the length
// of file: " and the path, for `input`, with the four outputs made and empty. A
// failure to write is not reported.
void split_command(const std::string& input, const std::string& name_a,
                   const std::string& name_b);

}  // namespace tova_fw_builder
