// signing/write_c_command.h
// The command `write_c`: a file as a C array.
#pragma once

#include <string>

namespace tova_fw_builder {

// Writes the bytes of `bin_file` to the text file `out_c_file` as a C array
// named "rawData", in the C array form of driver/ground/byte_dump.h, and a
// newline. Throws std::runtime_error "Failed to open file: " and the path for
// `bin_file`, before the output is touched, or "Cannot tell the length of file:
// " and the path, with the output empty. An output that can't be written is not
// reported.
void write_c_command(const std::string& bin_file,
                     const std::string& out_c_file);

}  // namespace tova_fw_builder
