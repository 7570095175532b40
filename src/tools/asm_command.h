// tools/asm_command.h
// The command `asm`: joins the files of a package into one.
#pragma once

#include <string>

namespace tova_fw_builder {

// Appends every file that a "bin" line of the package descriptor names to
// `out_file`, in the order of the lines, with nothing between them. The second
// word of the line is the path, relative to the working directory; all other
// text is ignored. Lines are read by a LineReader, so a line of more than 1023
// characters is the last one.
//
// Throws std::runtime_error "Failed to open file: " and the path for a
// descriptor or a listed file that can't be opened, also for the empty path of
// a "bin" line without a second word, and "Cannot tell the length of file: "
// and the path for one like a pipe; `out_file` keeps what was appended so far.
// An output that can't be written is not reported. `out_file` is truncated
// first: where it is listed as an input as well, only what it holds at that
// line is appended.
void asm_command(const std::string& pkg_file, const std::string& out_file);

}  // namespace tova_fw_builder
