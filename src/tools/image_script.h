// tools/image_script.h
// The script language of build_img (docs/file-formats.md, "Image script of
// build_img"), line by line, and the record that an image has by it.
#pragma once

#include <array>
#include <cstdint>
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

// The statements of one line, in the order in which they act; none if no
// keyword begins it.
std::vector<ImageStatement> image_statements(std::string_view line);

// As it stands in a flash image, 68 bytes.
struct PartitionTable {
  Le32 count;                      // positions recorded
  std::array<Le32, 16> positions;  // of the marked files, in order; then zero
};
static_assert(sizeof(PartitionTable) == 68 && alignof(PartitionTable) == 1);

}  // namespace tova_fw_builder
