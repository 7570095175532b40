// tools/build_img_command.h
// The command `build_img`: builds a flash or boot image from a small script.
#pragma once

#include <string>

namespace tova_fw_builder {

// Runs the image descriptor, a text of one statement a line, and writes the
// image to `out_file`. A file name is put directly behind `deploy_dir`, with
// no separator between. Numbers are hexadecimal, with or without "0x"; all
// values in the image are little-endian.
//
//   bin NAME [m]   append the file; with "m", record its position in the table
//   pt             the partition table goes here; written at the very end
//   offset NUMBER  go to the position, forward with zero bytes, or back
//   dd NUMBER...   append 4 bytes for each number
//   dw NUMBER...   append 2 bytes for each number, its low 16 bits
//   db NUMBER...   append 1 byte for each number, its low 8 bits
//   size NAME      append the length of the file, the low 32 bits
//   sha NAME       append the SHA-256 of the file, 32 bytes
//
// Lines that are empty, begin with "#" or with another word do nothing. Lines
// are read by a LineReader, so one of more than 1023 characters is the last. An
// operand that is not there leaves the word before it as the name; what is no
// number is passed over, and is 0 in `offset`. A number of more than 32 bits
// counts as none, and the word behind it is passed over.
//
// Throws std::runtime_error, with what was written so far left in place and
// no table written:
//   "Failed to open file: " and the path
//   "Cannot tell the length of file: " and the path, for one like a pipe
//   "Too many partition table entries" for the seventeenth file marked "m"
//   "Offset out of range: " and the number in decimal, like the sizes in the
//     log, for an offset of 2^63 or more, or when the padding can't be written
// Any other failure to write is not reported.
void build_img_command(const std::string& img_dscr_file,
                       const std::string& deploy_dir,
                       const std::string& out_file);

}  // namespace tova_fw_builder
