// tools/image_script.h
// Runs the scripts of build_img.
#pragma once

#include <array>
#include <istream>
#include <string>

#include "driver/ground/wire.h"

namespace tova_fw_builder {

// As it stands in a flash image, 68 bytes.
struct PartitionTable {
  Le32 count;                      // positions recorded
  std::array<Le32, 16> positions;  // of the marked files, in order; then zero
};
static_assert(sizeof(PartitionTable) == 68 && alignof(PartitionTable) == 1);

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
