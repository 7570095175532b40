// make_hex and split. Expected lines are written by hand.
#include <gtest/gtest.h>

#include "support/bytes.h"
#include "support/captured_log.h"
#include "support/temp_dir.h"
#include "tools/commands.h"

namespace tova_fw_builder {
namespace {

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
    const std::string in = dir.write("in", counting(size));
    make_hex_file(in, dir.file("out"), depth);
    EXPECT_EQ(expected, read_file(dir.file("out"))) << size << depth;
    EXPECT_EQ("Creating hex file from: " + in + "\n", log.text());
  }
}

// Every one of these has truncated the output by then.
TEST(MakeHex, RefusedDepthsAndInputs) {
  TempDir dir;
  std::filesystem::current_path(dir.path());
  dir.write("in", counting(16));
  const std::tuple<const char*, const char*, std::string> kCases[] = {
      {"in", "96", "Error: Unsupported hex file bit depth: 96\n\nno exception"},
      {"in", "-8", "Error: Unsupported hex file bit depth: -8\n\nno exception"},
      {"in", "bits", "invalid stoi argument"},
      {"in", "2147483648", "stoi argument out of range"},
      {"none", "32", "Failed to open file: none"},
  };
  for (const auto& [input, depth, expected] : kCases) {
    CapturedLog log;
    dir.write("out", "old");
    const std::string error = message_of(
        [&, &in = input, &bits = depth] { make_hex_file(in, "out", bits); });
    EXPECT_EQ("Creating hex file from: " + std::string(input) + "\n" + expected,
              log.text() + error);
    EXPECT_EQ("", read_file("out"));
  }
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
    const std::string in = dir.write("in", counting(size));
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
  std::string a, pairs;
  for (int i = 0; i < 35000; ++i) {
    a += std::string(8, static_cast<char>(i % 251));
    pairs += a.substr(a.size() - 8) + "--odd---";
  }
  split_binary(dir.write("in", pairs), dir.file("a"), dir.file("b"));
  EXPECT_TRUE(a == read_file(dir.file("a.bin")));
}

}  // namespace
}  // namespace tova_fw_builder
