// tools/image_script.h
// The scripts of build_img (docs/file-formats.md, "Image script of build_img"):
// their language, line by line, in a source of its own, and their run.
#pragma once

#include <array>
#include <cstdint>
#include <istream>
#include <string>
#include <string_view>
#include <vector>

#include "driver/ground/wire.h"

namespace tova_fw_builder {

struct ImageStatement {
  enum Kind { kBin, kPt, kOffset, kNumbers, kSize, kSha };

  Kind kind;
  std::string word = {};     // the keyword
  std::string name = {};     // of the file: kBin, kSize, kSha
  bool is_marked = false;    // kBin: for the partition table
  std::uint64_t offset = 0;  // kOffset
  std::uint8_t width = 0;    // kNumbers: bytes of each, 1, 2 or 4
  std::vector<std::uint32_t> numbers = {};  // their low bytes count
};

// The words that begin a statement.
std::vector<std::string_view> image_keywords();

// The statements of one line, in the order in which they act; none if no
// keyword begins it.
std::vector<ImageStatement> image_statements(std::string_view line);

// As it stands in a flash image, 68 bytes.
struct PartitionTable {
  Le32 count;                      // positions recorded
  std::array<Le32, 16> positions;  // of the marked files, in order; then zero
};
static_assert(sizeof(PartitionTable) == 68 && alignof(PartitionTable) == 1);

// Runs an image script and writes the image to `out_file`. File names are put
// directly behind `deploy_dir`.
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
