// tools/make_hex_command.h
// The command `make_hex`: a binary file as a memory initialisation file.
#pragma once

#include <string>

namespace tova_fw_builder {

// Writes `input` to the text file `output` (docs/file-formats.md, "Memory
// files"), which is empty after any failure. `depth_text` is the number of
// bits, by parse_signed, whose failures pass through; a number that isn't 32,
// 64 or 128 is logged as an error, but the command ends as if all were well.
//
// Throws std::runtime_error "Failed to open file: " or "Cannot tell the length
// of file: " and the path, for `input`. A failure to write is not reported.
void make_hex_command(const std::string& input, const std::string& output,
                      const std::string& depth_text);

}  // namespace tova_fw_builder
