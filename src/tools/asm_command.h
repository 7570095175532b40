// tools/asm_command.h
// The command `asm`: joins the files of a package into one.
#pragma once

#include <string>

namespace tova_fw_builder {

// Appends every file that a "bin" line of the package descriptor names
// (docs/file-formats.md, "Package descriptor") to `out_file`, which is
// truncated first and keeps what it has at a failure.
//
// Throws std::runtime_error "Failed to open file: " and the path, the empty one
// of a line without a second word too; "Cannot tell the length of file: " and
// the path for one like a pipe. A failure to write is not reported.
void asm_command(const std::string& pkg_file, const std::string& out_file);

}  // namespace tova_fw_builder
