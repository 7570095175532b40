// tools/image_script_lines.h
// The script language of build_img (docs/file-formats.md, "Image script of
// build_img"), line by line.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

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

}  // namespace tova_fw_builder
