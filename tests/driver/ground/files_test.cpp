#include "driver/ground/files.h"

#include <gtest/gtest.h>

#include <filesystem>
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

TEST(Files, PathsAreCutAndJoinedAsPlainText) {
  EXPECT_EQ("", directory_of("file"));
  EXPECT_EQ("a/b\\", directory_of("a/b\\c"));
  EXPECT_EQ("a\\b/", directory_of("a\\b/c"));
  EXPECT_EQ("/", directory_of("/c"));
  EXPECT_EQ("a/b/", directory_of("a/b/"));
  EXPECT_EQ("dir//name", join_path("dir/", "name"));
  EXPECT_EQ("/name", join_path("", "name"));
}

// The buffer of the working directory holds 260 characters with its zero.
TEST(Files, WorkingDirectoryOfUpTo259Characters) {
  TempDir dir;
  std::filesystem::path deep = dir.path();
  deep /= std::string(258 - deep.string().size(), 'd');
  ASSERT_EQ(259u, deep.string().size());
  std::filesystem::create_directory(deep);
  std::filesystem::current_path(deep);
  EXPECT_EQ(deep.string(), current_directory());

  std::filesystem::current_path(dir.path());
  deep += "e";
  std::filesystem::create_directory(deep);
  std::filesystem::current_path(deep);
  EXPECT_EQ("Cannot get current working directory",
            message_of([] { current_directory(); }));
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
