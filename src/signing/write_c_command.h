// signing/write_c_command.h
#pragma once

#include <string>

namespace tova_fw_builder {

// Writes a file as a C array. An output that can't be written is not reported.
// Throws std::runtime_error "Failed to open file: " and the path before the
// output is touched, or "Cannot tell the length of file: " and the path.
void write_c_command(const std::string& bin_file,
                     const std::string& out_c_file);

}  // namespace tova_fw_builder
