#include "inspect/compare/byte_difference.h"

#include <gtest/gtest.h>

namespace tova_fw_builder {
namespace {

constexpr std::uint64_t kPiece = 32 * 4096;  // that is read at once

// A long run of x with single bytes changed.
std::string run_with(std::size_t length,
                     const std::vector<std::size_t>& changed) {
  std::string bytes(length, 'x');
  for (const std::size_t at : changed) bytes.at(at) = 'y';
  return bytes;
}

TEST(ByteDifference, CountsBytesAndPagesOfTheRun) {
  const struct {
    std::string old_bytes;
    Span old_span;
    std::string new_bytes;
    Span new_span;
    Behind behind;
    ByteDifference expected;
  } cases[] = {
      {"abc", {0, 3}, "abc", {0, 3}, Behind::kNothing, {3, 3, 0, 0, 0}},
      {"abc", {0, 3}, "abd", {0, 3}, Behind::kNothing, {3, 3, 1, 1, 2}},
      // Runs at different places, and pages from the run's start on.
      {"..abc", {2, 3}, "abd", {0, 3}, Behind::kNothing, {3, 3, 1, 1, 2}},
      {run_with(9000, {}),
       {100, 8900},
       run_with(9000, {99, 100, 4195, 4196, 8999}),
       {100, 8900},
       Behind::kNothing,
       {8900, 8900, 4, 3, 0}},
      // On both sides of what is read at once.
      {run_with(3 * kPiece, {}),
       {0, 3 * kPiece},
       run_with(3 * kPiece, {kPiece - 1, kPiece, 3 * kPiece - 1}),
       {0, 3 * kPiece},
       Behind::kNothing,
       {3 * kPiece, 3 * kPiece, 3, 3, kPiece - 1}},
      // What one side alone has counts as length, and behind zeros as bytes.
      {"ab", {0, 2}, "abcd", {0, 4}, Behind::kNothing, {2, 4, 0, 0, 0}},
      {"ab", {0, 2}, "abcd", {0, 4}, Behind::kZeros, {2, 4, 2, 1, 2}},
      {"abcd", {0, 4}, "ab", {0, 2}, Behind::kZeros, {4, 2, 2, 1, 2}},
      {"ab",
       {0, 2},
       std::string("ab\0\0x", 5),
       {0, 5},
       Behind::kZeros,
       {2, 5, 1, 1, 4}},
      // Spans beyond their files.
      {"abc", {1, 9}, "abc", {1, 2}, Behind::kNothing, {2, 2, 0, 0, 0}},
      {"abc", {9, 9}, "abc", {0, 0}, Behind::kNothing, {0, 0, 0, 0, 0}},
      {"abc", {~0ull, ~0ull}, "a", {0, 1}, Behind::kZeros, {0, 1, 1, 1, 0}},
  };
  for (const auto& c : cases) {
    const ByteDifference found =
        compare_bytes(ByteSource::of(c.old_bytes), c.old_span,
                      ByteSource::of(c.new_bytes), c.new_span, c.behind);
    const auto row = &c - cases;
    EXPECT_EQ(c.expected.old_length, found.old_length) << row;
    EXPECT_EQ(c.expected.new_length, found.new_length) << row;
    EXPECT_EQ(c.expected.bytes, found.bytes) << row;
    EXPECT_EQ(c.expected.pages, found.pages) << row;
    EXPECT_EQ(c.expected.first, found.first) << row;
    EXPECT_EQ(
        c.expected.bytes == 0 && c.expected.old_length == c.expected.new_length,
        found.is_equal());
  }
}

}  // namespace
}  // namespace tova_fw_builder
