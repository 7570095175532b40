// tools/make_hex_command.h
// The command `make_hex`: a binary file as a memory initialisation file.
#pragma once

#include <string>

namespace tova_fw_builder {

// Writes `input` to the text file `output`, one memory word of 32, 64 or 128
// bits a line, in the form of make_hex_lines. The input counts in whole
// 32-bit words; bytes behind the last of them take no part, and words that the
// last line lacks are zero.
//
// `depth_text` is the number of bits, by parse_signed, whose failures pass
// through; any other number is logged as an error and the command ends as if
// all were well. Both leave `output` empty. Throws std::runtime_error "Failed
// to open file: " and the path for `input`, or "Cannot tell the length of file:
// " and the path, with `output` made by then. An output that can't be written
// is not reported.
void make_hex_command(const std::string& input, const std::string& output,
                      const std::string& depth_text);

}  // namespace tova_fw_builder
