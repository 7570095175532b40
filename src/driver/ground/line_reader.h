// driver/ground/line_reader.h
// The lines of the small text formats.
#pragma once

#include <algorithm>
#include <cstddef>
#include <istream>
#include <string_view>
#include <vector>

namespace tova_fw_builder {

// The characters that a line's buffer has room for.
inline constexpr std::size_t kLongestLine = 1023;

// What a text leaves in such a buffer: its start, up to a NUL.
inline std::string_view line_text(std::string_view text) {
  return text.substr(0, std::min(kLongestLine, text.find('\0')));
}

// Yields the lines of a text, through a buffer as those formats do, and at the
// speed of the disk: linker output has millions of them.
//
// - At most kLongestLine characters; a longer line yields those and ends the
//   reading.
// - A NUL ends the line's text, not the line.
// - The end of the text ends the last line. Behind a final line feed stands
//   one more, empty line, and an empty text is one empty line.
//
// `in` is read ahead of the lines; it must outlive the object.
class LineReader {
 public:
  explicit LineReader(std::istream& in);

  // The next line, without its line feed, valid until the next call. False
  // when the reading has ended.
  bool next(std::string_view& line);

 private:
  void refill();

  std::istream& in_;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  bool ended_ = false;
};

}  // namespace tova_fw_builder
