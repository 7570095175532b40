// tools/build_img_command.h
// The command `build_img`: builds a flash or boot image from a small script.
#pragma once

#include <istream>
#include <string>

namespace tova_fw_builder {

// Runs the image script in `img_dscr_file`. Throws what run_image_script
// throws.
void build_img_command(const std::string& img_dscr_file,
                       const std::string& deploy_dir,
                       const std::string& out_file);

// Runs an image script (docs/file-formats.md, "Image script of build_img") and
// writes the image to `out_file`. File names are put directly behind
// `deploy_dir`.
//
// Throws std::runtime_error, with the image as far as it came and no table:
//   "Failed to open file: " and the path
//   "Cannot tell the length of file: " and the path, for one like a pipe
//   "Too many partition table entries" for the seventeenth file marked "m"
//   "Offset out of range: " and the number in decimal, for an offset of 2^63
//     or more, or when the padding can't be written
// Any other failure to write is not reported.
void run_image_script(std::istream& script, const std::string& deploy_dir,
                      const std::string& out_file);

}  // namespace tova_fw_builder
