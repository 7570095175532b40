#include "inspect/compare/byte_difference.h"

#include <algorithm>
#include <cstring>

#include "layout/records/out_map.h"

namespace tova_fw_builder {
namespace {

constexpr std::uint64_t kPiece = 32 * kPageSize;

std::uint64_t length_in(const ByteSource& source, Span span) {
  return std::min(span.length,
                  source.size() - std::min(source.size(), span.offset));
}

// A piece of one side; zeros behind the end of its run.
class Side {
 public:
  Side(const ByteSource& source, Span span)
      : source_(source),
        offset_(span.offset),
        length_(length_in(source, span)) {}

  std::uint64_t length() const { return length_; }

  const char* piece(std::uint64_t at, std::uint64_t length) {
    piece_.resize(length);
    const std::uint64_t there =
        std::min(length, length_ - std::min(length_, at));
    source_.read(offset_ + at, {piece_.data(), there});
    std::fill(piece_.begin() + static_cast<std::ptrdiff_t>(there), piece_.end(),
              '\0');
    return piece_.data();
  }

 private:
  const ByteSource& source_;
  std::uint64_t offset_;
  std::uint64_t length_;
  WipedBytes piece_;
};

std::uint64_t count_different(const char* a, const char* b, std::uint64_t n) {
  std::uint64_t count = 0;
  for (std::uint64_t i = 0; i < n; ++i) count += a[i] != b[i];
  return count;
}

// Counts in one page.
void compare_page(const char* a, const char* b, std::uint64_t length,
                  std::uint64_t at, ByteDifference& result) {
  if (std::memcmp(a, b, length) == 0) return;
  if (result.bytes == 0) {
    const auto first = std::mismatch(a, a + length, b).first;
    result.first = at + static_cast<std::uint64_t>(first - a);
  }
  ++result.pages;
  result.bytes += count_different(a, b, length);
}

}  // namespace

ByteDifference compare_bytes(const ByteSource& old_source, Span old_span,
                             const ByteSource& new_source, Span new_span,
                             Behind behind) {
  Side old_side(old_source, old_span);
  Side new_side(new_source, new_span);
  ByteDifference result;
  result.old_length = old_side.length();
  result.new_length = new_side.length();
  const auto [shorter, longer] =
      std::minmax({result.old_length, result.new_length});
  const std::uint64_t end = behind == Behind::kZeros ? longer : shorter;
  for (std::uint64_t at = 0; at < end; at += kPiece) {
    const std::uint64_t length = std::min(kPiece, end - at);
    const char* a = old_side.piece(at, length);
    const char* b = new_side.piece(at, length);
    if (std::memcmp(a, b, length) == 0) continue;
    for (std::uint64_t page = 0; page < length; page += kPageSize) {
      compare_page(a + page, b + page,
                   std::min<std::uint64_t>(kPageSize, length - page), at + page,
                   result);
    }
  }
  return result;
}

}  // namespace tova_fw_builder
