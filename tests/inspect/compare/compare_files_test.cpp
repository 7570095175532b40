// Files and folders, and what is printed of them.
#include "inspect/compare/compare_files.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <sstream>
#include <system_error>

#include "inspect/compare/folder_parts.h"
#include "inspect/compare/report.h"
#include "inspect/sample_files.h"
#include "support/temp_dir.h"
#include "told.h"

namespace tova_fw_builder {
namespace {

namespace fs = std::filesystem;

std::string printed(const Comparison& comparison, bool all = false) {
  std::ostringstream out;
  print_comparison(out, comparison, all, {});
  return out.str();
}

// Two files.
Comparison compare(const std::string& old_bytes, const std::string& new_bytes,
                   bool ignore_dates = false) {
  const TempDir dir;
  return compare_paths(dir.write("old", old_bytes), dir.write("new", new_bytes),
                       ignore_dates);
}

std::string with(std::string bytes, std::size_t offset, char byte) {
  bytes.at(offset) = byte;
  return bytes;
}

TEST(CompareFiles, WhatIsPrinted) {
  const std::string hash_7(16, '7');
  const struct {
    std::string old_bytes;
    std::string new_bytes;
    std::string text;
  } cases[] = {
      {binary_18(), binary_18(), ""},
      {binary_18(), with(binary_18(), 64 + 24, 1),
       "header.feature_mask: 0xff -> 0x1\n"},
      // Of long hexadecimal texts a piece from the first difference on.
      {binary_18(), with(binary_18(), 116 + 33, 'x'),
       "modules[eins].hash: 7777777777777777... -> 7778777777777777...\n"},
      {binary_18(), with(binary_18(), 116 + 62, 'x'),
       "modules[eins].hash: ...777 -> ...877\n"},
      // Contents of a binary: the address, and the place in the file.
      {binary_18(), with(binary_18(), 24640 + 5, 'd'),
       "modules[eins].segments[text].contents: 1 byte differs in 1 of 1 page, "
       "first at 0x10000005 (file 0x6045)\n"},
      {binary_30(), with(binary_30(), 32768 + 4100, 'd'),
       "contents: 1 byte differs in 1 of 2 pages, first at 0x9004\n"},
      {manifest_15(true), with(manifest_15(true), 20, 0x28),
       "css.date: 0x20240229 -> 0x20240228  (29 February 2024 -> 28 February "
       "2024)\n"},
      {binary_18(), metadata_18(), "format: binary -> metadata\n"},
      {"some bytes\x01", "same bytes\x01!",
       "contents: 11 -> 12 bytes, 1 byte differs in 1 of 1 page, first at "
       "0x1\n"},
      {"\x01", "\x01\x02", "contents: 1 -> 2 bytes, the first 1 are equal\n"},
      {"", "\x01", "contents: 0 -> 1 byte\n"},
      {"a\nb\n", "a\nc\n", "lines[2]: b -> c\n"},
      {"a\n", "a\nb\x7f\n", "lines[2]: added, b\\x7f\n"},
      // Characters that differ in their last byte alone are shown whole.
      {std::string(38, 'x') + "\u00E4\u00E4\u00E4",
       std::string(38, 'x') + "\u00E4\u00F6" + std::string(20, 'y'),
       "lines[1]: ...\u00E4\u00E4 -> ...\u00F6" + std::string(15, 'y') +
           "...\n"},
      // A structure inside another file, and the bytes around it.
      {Bytes().text("boot").text(manifest_15(true)).text("tail"),
       Bytes()
           .text("boat")
           .text(with(manifest_15(true), 644 + 24, 1))
           .text("tail"),
       "embedded[manifest-1.5].header.feature_mask: 0xff -> 0x1\n"
       "contents: 1 byte differs in 1 of 2 pages, first at 0x2\n"},
      {Bytes().text("boot").text(metadata_18()).text(metadata_18()),
       Bytes().text("boot").text(metadata_18()).text("gone"),
       "embedded[metadata 2]: removed, offset 0x64, length 96\n"
       "contents: 196 -> 104 bytes, 4 bytes differ in 1 of 1 page, first at "
       "0x64\n"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.text, printed(compare(c.old_bytes, c.new_bytes)));
  }
}

TEST(CompareFiles, EchoesAreFoldedOrShown) {
  std::string signed_later = manifest_15(true);
  signed_later[20] = 0x28;
  signed_later[400] = 'x';
  const Comparison dated = compare(manifest_15(true), signed_later);
  EXPECT_EQ(
      "css.date: 0x20240229 -> 0x20240228  (29 February 2024 -> 28 February "
      "2024)\n"
      "1 echo is folded away (--all shows it): signature\n",
      printed(dated));
  EXPECT_NE(std::string::npos,
            printed(dated, true).find("  [signs what changed]\n"));
  EXPECT_FALSE(dated.is_equal());
  EXPECT_TRUE(compare(manifest_15(true), signed_later, true).is_equal());
}

TEST(CompareFiles, JsonOfAChange) {
  const Json json =
      comparison_json(compare(binary_18(), with(binary_18(), 24640 + 5, 'd')));
  EXPECT_EQ(Json::parse(R"({
    "schema": 1, "equal": false, "changes": [{
      "path": "modules[eins].segments[text].contents",
      "old": null, "new": null, "echo": false,
      "bytes": {"old_length": 4096, "new_length": 4096, "differ": 1, "pages": 1,
                "first": 5, "old_offset": 24640, "new_offset": 24640}}],
    "only_old": [], "only_new": []})"),
            json);
  // In a structure that stands two bytes farther on.
  const Json inside =
      comparison_json(compare("boot" + manifest_15(true),
                              "loader" + with(manifest_15(true), 4000, 'x')));
  EXPECT_EQ("embedded[manifest-1.5].padding[0]", inside["changes"][0]["path"]);
  const Json& bytes = inside["changes"][0]["bytes"];
  EXPECT_EQ(4u + 1008, bytes["old_offset"]);
  EXPECT_EQ(6u + 1008, bytes["new_offset"]);
  const Json added = comparison_json(compare("a\n", "a\nb\n"));
  EXPECT_EQ(Json::parse(R"([{"path": "lines[2]", "old": null, "new": "b",
                             "echo": false}])"),
            added["changes"]);
}

class Folders : public testing::Test {
 protected:
  // A file of both folders, or of one.
  void put(const std::string& name, const char* old_bytes,
           const char* new_bytes) {
    for (const auto& [folder, bytes] :
         {std::pair("old/", old_bytes), std::pair("new/", new_bytes)}) {
      fs::create_directories(fs::path(dir_.file(folder + name)).parent_path());
      if (bytes != nullptr) dir_.write(folder + name, bytes);
    }
  }
  Comparison compare(bool ignore_dates = false) const {
    return compare_paths(dir_.file("old"), dir_.file("new"), ignore_dates);
  }

  TempDir dir_;
};

TEST_F(Folders, FilesByNameAlsoBelow) {
  put("same", "x", "x");
  put("sub/deep", "a\n", "b\n");
  put("gone", "x", nullptr);
  put("sub/new", nullptr, "x");
  put("top", "1\n", "2\n");
  const Comparison found = compare();
  EXPECT_EQ("top: lines[1] 1 -> 2\nsub/deep: lines[1] a -> b\n",
            told(found.changes));
  EXPECT_EQ(std::vector<std::string>{"gone"}, found.only_old);
  EXPECT_EQ(std::vector<std::string>{"sub/new"}, found.only_new);
  EXPECT_TRUE(found.troubles.empty());
  EXPECT_EQ(
      "top\n  lines[1]: 1 -> 2\nsub/deep\n  lines[1]: a -> b\n"
      "only in OLD: gone\nonly in NEW: sub/new\n",
      printed(found));
  EXPECT_EQ("sub/deep", comparison_json(found)["changes"][1]["file"]);
}

// One build in two folders; the dependency file is longer than the texts whose
// lines are told.
TEST_F(Folders, PlacesOfTheBuild) {
  std::string paths[2];
  for (int i = 0; i < 20; ++i) {
    paths[0] += "binary_parts: /a/def" + std::to_string(i) + "\n";
    paths[1] += "binary_parts: /b/c/def" + std::to_string(i) + "\n";
  }
  std::string moved = package_descriptor();
  for (auto at = moved.find("/tmp"); at != moved.npos;
       at = moved.find("/tmp")) {
    moved.replace(at, 4, "/x/y");
  }
  put("fw.d", paths[0].c_str(), paths[1].c_str());
  put("fw.elfs", "/a/e\n", "e\n");
  put("fw.pkg", package_descriptor().c_str(), moved.c_str());
  Comparison found = compare();
  EXPECT_FALSE(found.is_equal());
  EXPECT_EQ(
      "fw.elfs\n  lines[1]: /a/e -> e\n"
      "22 echoes are folded away (--all shows them): path 2, lines 20\n",
      printed(found));
  EXPECT_EQ("the folder", found.changes[1].echo);
  put("fw.elfs", "/a/e\n", "/b/e\n");
  EXPECT_TRUE(compare(true).is_equal());

  // Another file, a file of another kind, and files that stand alone.
  put("fw.elfs", "/a/e\n/a/f\n", "/b/e\n/b/g\n");
  put("fw.txt", "/a/h\n", "/b/h\n");
  EXPECT_EQ("fw.elfs: lines[2] /a/f -> /b/g\nfw.txt: lines[1] /a/h -> /b/h\n",
            told(compare(true).changes));
  EXPECT_FALSE(
      compare_paths(dir_.file("old/fw.pkg"), dir_.file("new/fw.pkg"), true)
          .is_equal());
}

TEST(FolderParts, OfEachWord) {
  const struct {
    const char* old_text;
    const char* new_text;
    bool only_folders;
  } cases[] = {
      {"/a/x", "/b/x", true},
      {"C:\\a\\x", "D:/b/x", true},
      {"k: /a/x  /a/y", "k: /b/x  /c/y", true},
      {"/a/x", "/a/x", false},
      {"/a/x", "/a/y", false},
      {"/a/x", "x", false},
      {"/a/x 1", "/b/x 2", false},
      {"/a/x", "/b/x /b/y", false},
      {"/a/x ", "/b/x", false},
      {"/a/", "/b/", false},
      {"a", "b", false},
      {"", "/b/x", false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.only_folders, differ_in_folders(c.old_text, c.new_text))
        << c.new_text;
    EXPECT_EQ(c.only_folders, differ_in_folders(c.new_text, c.old_text));
  }
}

// What can't be read is named, and the rest is compared.
TEST_F(Folders, TroublesAreNamed) {
  put("fine", "a\n", "b\n");
  fs::create_symlink("loop", dir_.file("old/loop"));
  fs::create_symlink("nowhere", dir_.file("new/link"));
  fs::create_symlink(".", dir_.file("new/self"));  // a folder: not followed
  const Comparison found = compare();
  EXPECT_EQ("fine: lines[1] a -> b\n", told(found.changes));
  ASSERT_EQ(2u, found.troubles.size());
  EXPECT_EQ(dir_.file("old/loop"), found.troubles[0].file);
  EXPECT_EQ("cannot be read: Too many levels of symbolic links",
            found.troubles[0].text);
  EXPECT_EQ(dir_.file("new/link"), found.troubles[1].file);
  EXPECT_EQ("cannot be read: No such file or directory",
            found.troubles[1].text);
  EXPECT_FALSE(found.is_equal());
}

// Root may open all, so it is nobody here.
TEST_F(Folders, FoldersThatCannotBeOpened) {
  constexpr uid_t kNobody = 65534;
  put("fine", "a\n", "b\n");
  put("shut/unseen", "a\n", "b\n");
  fs::permissions(dir_.path(), fs::perms(0755));
  for (const char* side : {"old/shut", "new/shut"}) {
    fs::permissions(dir_.file(side), fs::perms::none);
  }
  const bool is_root = geteuid() == 0;
  ASSERT_TRUE(!is_root || seteuid(kNobody) == 0);
  const Comparison found = compare();
  ASSERT_TRUE(!is_root || seteuid(0) == 0);
  for (const char* side : {"old/shut", "new/shut"}) {
    fs::permissions(dir_.file(side), fs::perms::owner_all);
  }
  EXPECT_EQ("fine: lines[1] a -> b\n", told(found.changes));
  ASSERT_EQ(2u, found.troubles.size());
  EXPECT_EQ("cannot be read: Permission denied", found.troubles[0].text);
  EXPECT_FALSE(found.is_equal());
}

TEST_F(Folders, NoFolderAndAFile) {
  put("x", "1", "1");
  EXPECT_TRUE(compare().is_equal());
  EXPECT_EQ(dir_.file("none") + ": cannot be read: No such file or directory",
            message_of([&] {
              compare_paths(dir_.file("none"), dir_.file("old"), false);
            }));
  EXPECT_EQ(0u, message_of([&] {
                  compare_paths(dir_.file("old/x"), dir_.file("new"), false);
                }).find("one of the two is a folder"));
}

}  // namespace
}  // namespace tova_fw_builder
