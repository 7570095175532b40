// make_hex and split. Expected lines are written by hand.
#include <gtest/gtest.h>

#include <numeric>

#include "support/captured_log.h"
#include "support/temp_dir.h"
#include "tools/make_hex_file.h"
#include "tools/split_binary.h"

namespace tova_fw_builder {
namespace {

// `count` bytes, counting up from 1.
std::string counted(std::size_t count) {
  std::string bytes(count, '\0');
  std::iota(bytes.begin(), bytes.end(), '\1');
  return bytes;
}

TEST(MakeHex, WordsLinesAndFilling) {
  const std::tuple<std::size_t, const char*, const char*> kCases[] = {
      {3, "128", ""},
      {8, "32", "04030201\n08070605\n"},
      {11, " +64bits", "0807060504030201\n"},  // 3 bytes take no part
      {15, "64", "0807060504030201\n000000000C0B0A09\n"},
      {23, "128",
       "100F0E0D0C0B0A090807060504030201\n"
       "00000000000000000000000014131211\n"},
  };
  TempDir dir;
  for (const auto& [size, depth, expected] : kCases) {
    CapturedLog log;
    const std::string in = dir.write("in", counted(size));
    make_hex_file(in, dir.file("out"), depth);
    EXPECT_EQ(expected, read_file(dir.file("out"))) << size << depth;
    EXPECT_EQ("Creating hex file from: " + in + "\n", log.text());
  }
}

// Every one of these has truncated the output by then.
TEST(MakeHex, RefusedDepthsAndInputs) {
  TempDir dir;
  const std::string in = dir.write("in", counted(16));
  const auto run = [&](const std::string& input, const std::string& depth) {
    CapturedLog log;
    const std::string out = dir.write("out", "old");
    const std::string error =
        message_of([&] { make_hex_file(input, out, depth); });
    EXPECT_EQ("", read_file(out)) << depth;
    return log.text() + error;
  };
  const std::string start = "Creating hex file from: " + in + "\n";
  for (const std::string depth : {"96", "256", "-32"}) {
    EXPECT_EQ(start + "Error: Unsupported hex file bit depth: " + depth +
                  "\n\nno exception",
              run(in, depth));
  }
  EXPECT_EQ(start + "invalid stoi argument", run(in, "bits"));
  EXPECT_EQ(start + "stoi argument out of range", run(in, "2147483648"));
  EXPECT_TRUE(run("none", "32").ends_with("\nFailed to open file: none"));
}

TEST(Split, DealsWordsAndFillsTheLastPair) {
  const std::tuple<std::size_t, const char*, const char*> kCases[] = {
      {7, "", ""},
      {8, "0807060504030201\n", "0000000000000000\n"},
      {15, "0807060504030201\n", "000F0E0D0C0B0A09\n"},
      {20, "0807060504030201\n", "100F0E0D0C0B0A09\n"},
      {26, "0807060504030201\n1817161514131211\n",
       "100F0E0D0C0B0A09\n0000000000001A19\n"},
  };
  TempDir dir;
  CapturedLog log;
  for (const auto& [size, hex_a, hex_b] : kCases) {
    const std::string in = dir.write("in", counted(size));
    split_binary(in, dir.file("a"), dir.file("b"));
    EXPECT_EQ(hex_a, read_file(dir.file("a.hex"))) << size;
    EXPECT_EQ(hex_b, read_file(dir.file("b.hex"))) << size;
    EXPECT_TRUE(log.text().ends_with("Spliting binary file: " + in + "\n"));
  }
  // The outputs are truncated before the input turns out to be missing.
  std::filesystem::current_path(dir.path());
  EXPECT_EQ("Failed to open file: none",
            message_of([] { split_binary("none", "a", "b"); }));
  EXPECT_EQ("", read_file("a.hex") + read_file("b.bin"));
}

// A 16-bit index would not get past this, and pieces must join without a seam.
TEST(Split, MoreThan65536Words) {
  TempDir dir;
  CapturedLog log;
  std::string in, a, b;
  for (int i = 0; i < 70000; ++i) {
    std::string word(8, static_cast<char>(i % 251));
    in += word;
    (i % 2 == 0 ? a : b) += word;
  }
  split_binary(dir.write("in", in), dir.file("a"), dir.file("b"));
  EXPECT_TRUE(a == read_file(dir.file("a.bin")));
  EXPECT_TRUE(b == read_file(dir.file("b.bin")));
}

}  // namespace
}  // namespace tova_fw_builder
