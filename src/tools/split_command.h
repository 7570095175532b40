// tools/split_command.h
// The command `split`: deals a binary out to two 64-bit memory banks.
#pragma once

#include <string>

namespace tova_fw_builder {

// Writes the 64-bit words at even index of `input` to `name_a` + ".bin" as
// they stand and to `name_a` + ".hex" as text, one line a word in the form of
// make_hex_lines, and those at odd index likewise under `name_b`. Inputs of
// any length work.
//
// Bytes behind the last whole word are dropped, with one exception: where the
// number of whole words is odd, the second bank ends with those bytes filled
// up with zero (a word of zero if there are none), so that both banks have the
// same length. An input below 8 bytes gives four empty files.
//
// Throws std::runtime_error "Failed to open file: " and the path for `input`,
// or "Cannot tell the length of file: " and the path, with the four outputs
// made by then. An output that can't be written is not reported.
void split_command(const std::string& input, const std::string& name_a,
                   const std::string& name_b);

}  // namespace tova_fw_builder
