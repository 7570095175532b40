#include "driver/ground/paths.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

TEST(NativePath, PathsAreCutAndJoinedAsPlainText) {
  EXPECT_EQ("", directory_of("file"));
  EXPECT_EQ("a/b\\", directory_of("a/b\\c"));
  EXPECT_EQ("a\\b/", directory_of("a\\b/c"));
  EXPECT_EQ("/", directory_of("/c"));
  EXPECT_EQ("a/b/", directory_of("a/b/"));
  EXPECT_EQ("dir//name", join_path("dir/", "name"));
  EXPECT_EQ("/name", join_path("", "name"));
}

// The buffer of the working directory holds 260 characters with its zero.
TEST(NativePath, WorkingDirectoryOfUpTo259Characters) {
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

}  // namespace
}  // namespace tova_fw_builder
