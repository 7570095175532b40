// tools/asm_command.h
// The command `asm`: joins the files of a package into one.
#pragma once

#include <istream>
#include <ostream>
#include <string>

namespace tova_fw_builder {

// Truncates `out_file` and appends the files of the descriptor in `pkg_file`.
// At a failure it keeps what it has. Throws what append_files throws.
void asm_command(const std::string& pkg_file, const std::string& out_file);

// Appends every file that a "bin" line of a package descriptor names
// (docs/file-formats.md, "Package descriptor") to `out`.
//
// Throws std::runtime_error "Failed to open file: " and the path, the empty one
// of a line without a second word too; "Cannot tell the length of file: " and
// the path for one like a pipe. A failure to write is not reported.
void append_files(std::istream& package, std::ostream& out);

}  // namespace tova_fw_builder
