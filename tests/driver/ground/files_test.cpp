#include "driver/ground/files.h"

#include <gtest/gtest.h>

#include <numeric>
#include <sstream>

#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

TEST(Files, OpeningNamesThePathAsGiven) {
  TempDir dir;
  for (const std::string& path :
       {std::string(), dir.file("missing"), dir.path()}) {
    const std::string expected = "Failed to open file: " + path;
    EXPECT_EQ(expected, message_of([&] { open_binary_input(path); }));
    EXPECT_EQ(expected, message_of([&] { open_input(path); }));
    EXPECT_EQ(expected, message_of([&] { read_start(path, {}); }));
  }
}

TEST(Files, CopiesInPiecesUpToTheLength) {
  TempDir dir;
  std::string bytes(700000, '\0');
  std::iota(bytes.begin(), bytes.end(), '\0');
  const auto in = open_binary_input(dir.write("in", bytes));
  EXPECT_EQ(bytes.size(), file_length(*in, "in"));

  std::ostringstream whole;
  copy_bytes(*in, bytes.size(), whole);
  EXPECT_TRUE(bytes == whole.str());

  in->seekg(0);
  std::ostringstream part;
  copy_bytes(*in, 262145, part);
  EXPECT_TRUE(bytes.substr(0, 262145) == part.str());

  // The file turned out shorter than it was.
  in->seekg(0);
  std::ostringstream rest;
  copy_bytes(*in, bytes.size() + 1000000, rest);
  EXPECT_TRUE(bytes == rest.str());
}

// Gives and takes any bytes, and counts those that it takes.
struct Counter : std::streambuf {
  std::streamsize xsgetn(char*, std::streamsize n) override { return n; }
  std::streamsize xsputn(const char*, std::streamsize n) override {
    count += static_cast<std::uint64_t>(n);
    return n;
  }
  std::uint64_t count = 0;
};

// The hole in the file takes no room on the disk.
TEST(Files, LengthsAndPositionsHave64Bits) {
  constexpr std::uint64_t kLength = (1ull << 32) + 5;
  const TempDir dir;
  std::ofstream sparse(dir.file("sparse"), std::ios_base::binary);
  sparse.seekp(kLength - 1);
  EXPECT_EQ(kLength - 1, position_of(sparse));
  sparse.put('x');
  sparse.close();
  EXPECT_EQ(kLength, file_length(*open_binary_input(dir.file("sparse")), ""));
  Counter counter;
  std::iostream stream(&counter);
  copy_bytes(stream, kLength, stream);
  EXPECT_EQ(kLength, counter.count);
  write_zeros(stream, kLength);
  EXPECT_EQ(2 * kLength, counter.count);
}

TEST(Files, ZerosOfAnyCount) {
  for (const std::size_t count : {0u, 1u, 16384u, 16385u, 100000u}) {
    std::ostringstream out;
    write_zeros(out, count);
    EXPECT_TRUE(std::string(count, '\0') == out.str()) << count;
  }
  std::ostringstream failed;
  failed.setstate(std::ios_base::badbit);
  write_zeros(failed, ~std::uint64_t{0});  // must end
}

}  // namespace
}  // namespace tova_fw_builder
