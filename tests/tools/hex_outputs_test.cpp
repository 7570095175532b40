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
  const struct {
    std::size_t size;
    const char* depth;
    const char* expected;
  } kCases[] = {
      {3, "128", ""},
      {8, "32", "04030201\n08070605\n"},
      {11, " +64bits", "0807060504030201\n"},  // 3 bytes take no part
      {15, "64", "0807060504030201\n000000000C0B0A09\n"},
      {23, "128",
       "100F0E0D0C0B0A090807060504030201\n"
       "00000000000000000000000014131211\n"},
  };
  TempDir dir;
  for (const auto& c : kCases) {
    CapturedLog log;
    const std::string in = dir.write("in", counted(c.size));
    make_hex_file(in, dir.file("out"), c.depth);
    EXPECT_EQ(c.expected, read_file(dir.file("out"))) << c.size << c.depth;
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
  const struct {
    std::size_t size;
    const char* hex_a;
    const char* hex_b;
  } kCases[] = {
      {7, "", ""},
      {8, "0807060504030201\n", "0000000000000000\n"},
      {15, "0807060504030201\n", "000F0E0D0C0B0A09\n"},
      {20, "0807060504030201\n", "100F0E0D0C0B0A09\n"},
      {26, "0807060504030201\n1817161514131211\n",
       "100F0E0D0C0B0A09\n0000000000001A19\n"},
  };
  TempDir dir;
  for (const auto& c : kCases) {
    CapturedLog log;
    const std::string in = dir.write("in", counted(c.size));
    split_binary(in, dir.file("a"), dir.file("b"));
    EXPECT_EQ(c.hex_a, read_file(dir.file("a.hex"))) << c.size;
    EXPECT_EQ(c.hex_b, read_file(dir.file("b.hex"))) << c.size;
    EXPECT_EQ("Spliting binary file: " + in + "\n", log.text());
  }
}

// A 16-bit index would not get past this, and pieces must join without a seam.
TEST(Split, MoreThan65536Words) {
  TempDir dir;
  CapturedLog log;
  std::string bytes(8 * 65539 + 5, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    bytes[i] = static_cast<char>(i * 2654435761u >> 13);
  }
  split_binary(dir.write("in", bytes), dir.file("a"), dir.file("b"));
  const std::string a = read_file(dir.file("a.bin"));
  const std::string b = read_file(dir.file("b.bin"));
  std::string joined;
  for (std::size_t i = 0; i < a.size(); i += 8) {
    joined += a.substr(i, 8) + b.substr(i, 8);
  }
  EXPECT_TRUE(bytes + std::string(3, '\0') == joined);
}

TEST(Split, MissingInputLeavesFourEmptyFiles) {
  TempDir dir;
  CapturedLog log;
  for (const char* name : {"a.hex", "b.hex", "a.bin", "b.bin"}) {
    dir.write(name, "old");
  }
  EXPECT_EQ("Failed to open file: none", message_of([&] {
              split_binary("none", dir.file("a"), dir.file("b"));
            }));
  for (const char* name : {"a.hex", "b.hex", "a.bin", "b.bin"}) {
    EXPECT_TRUE(std::filesystem::is_empty(dir.file(name))) << name;
  }
}

}  // namespace
}  // namespace tova_fw_builder
