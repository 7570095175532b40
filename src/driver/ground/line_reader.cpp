// Fast reading of lines. The buffer always holds a longest line and its line
// feed before it is searched, so no line is ever joined from two pieces.
#include "driver/ground/line_reader.h"

#include <cstring>

namespace tova_fw_builder {

namespace {

constexpr std::size_t kBufferSize = 64 * 1024;

}  // namespace

LineReader::LineReader(std::istream& in) : in_(in), buffer_(kBufferSize) {}

bool LineReader::next(std::string_view& line) {
  if (ended_) return false;
  if (end_ - begin_ <= kLongestLine) refill();
  const char* const start = buffer_.data() + begin_;
  // One more, as the line feed of a longest line stands behind it.
  const std::size_t searched = std::min(end_ - begin_, kLongestLine + 1);
  const void* const feed = std::memchr(start, '\n', searched);
  if (feed != nullptr) {
    line = {start, static_cast<const char*>(feed)};
    begin_ += line.size() + 1;
  } else {
    line = {start, std::min(searched, kLongestLine)};
    ended_ = true;
  }
  // Behind the search for the feed: a NUL doesn't end the line in the file.
  line = line_text(line);
  return true;
}

void LineReader::refill() {
  // A read that fell short was the last one.
  if (!in_) return;
  std::copy(buffer_.begin() + static_cast<std::ptrdiff_t>(begin_),
            buffer_.begin() + static_cast<std::ptrdiff_t>(end_),
            buffer_.begin());
  end_ -= begin_;
  begin_ = 0;
  in_.read(buffer_.data() + end_,
           static_cast<std::streamsize>(buffer_.size() - end_));
  end_ += static_cast<std::size_t>(in_.gcount());
}

}  // namespace tova_fw_builder
