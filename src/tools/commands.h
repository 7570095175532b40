// tools/commands.h
// The commands of this room, each in a source of its own; append_files is no
// command, but the work of one on an open text.
#pragma once

#include <istream>
#include <ostream>
#include <string>

namespace tova_fw_builder {

// Truncates `out_file` and appends the files of the descriptor in `pkg_file`.
// At a failure it keeps what it has. Throws what append_files throws.
void assemble_image(const std::string& pkg_file, const std::string& out_file);

// Appends every file that a "bin" line of a package descriptor names
// (docs/file-formats.md, "Package descriptor") to `out`.
//
// Throws std::runtime_error "Failed to open file: " and the path, the empty one
// of a line without a second word too; "Cannot tell the length of file: " and
// the path for one like a pipe. A failure to write is not reported.
void append_files(std::istream& package, std::ostream& out);

// Runs the image script in `img_dscr_file`. Throws std::runtime_error "Failed
// to open file: " and the script's path, with `out_file` untouched, and what
// run_image_script throws.
void build_image(const std::string& img_dscr_file,
                 const std::string& deploy_dir, const std::string& out_file);

// Writes the two banks to `name_a` and `name_b`, each with ".bin" and with
// ".hex" (docs/file-formats.md, "Memory files").
//
// Throws std::runtime_error "Failed to open file: " or "Cannot tell the length
// of file: " and the path, for `input`, with the four outputs made and empty. A
// failure to write is not reported.
void split_binary(const std::string& input, const std::string& name_a,
                  const std::string& name_b);

// Writes `input` to the text file `output` (docs/file-formats.md, "Memory
// files"), which is empty after any failure. `depth_text` is the number of
// bits, by parse_signed, whose failures pass through; a number that isn't 32,
// 64 or 128 is logged as an error, but the command ends as if all were well.
//
// Throws std::runtime_error "Failed to open file: " or "Cannot tell the length
// of file: " and the path, for `input`. A failure to write is not reported.
void make_hex_file(const std::string& input, const std::string& output,
                   const std::string& depth_text);

}  // namespace tova_fw_builder
