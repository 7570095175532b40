#include "layout/content_writer.h"

#include <gtest/gtest.h>

#include "crypto/sha_hash.h"
#include "layout/group_binding.h"
#include "layout/map_parts.h"
#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

// A map and what it is bound to.
struct Build {
  FwImageMap image;
  FwOutMap out;

  explicit Build(std::uint32_t generation = kKelp18) {
    out.binary_ver = generation;
  }
  Group& group(FwOutMap::Module& module, const std::string& sections) {
    const CapturedLog ignored;
    Group& group = add_group(module, Group::kText, sections);
    attach_group(group, image, false, true);
    return group;
  }
  std::string write(const std::string& path = "") {
    std::ostringstream stream;
    write_module_contents(out, stream, path);
    return stream.str();
  }
};

std::string zeros(std::size_t count) { return std::string(count, '\0'); }

// The text and zeros behind it, `size` bytes in all.
std::string padded(std::string text, std::size_t size) {
  text.resize(size);
  return text;
}

std::string sha256(const std::string& text) {
  std::array<std::uint8_t, 32> digest;
  Sha256Hash hash(reinterpret_cast<const std::uint8_t*>(text.data()),
                  text.size());
  hash.final(digest.data());
  return {digest.begin(), digest.end()};
}

std::string hash_of(const FwOutMap::Module& module) {
  return {module.hash.begin(), module.hash.end()};
}

TEST(ContentWriter, DistancesInTheFileAreThoseOfTheAddresses) {
  Build build;
  add_header(build.image, "b", 0x1020, 8, "c", "BBBBBBBB");
  add_header(build.image, "a", 0x1000, 0x10, "c", "..AAAAAAAAAAAAAAAA")
      .file_offset = 2;
  auto& module = add_module(build.out, "mod");
  Group& group = build.group(module, "b a");
  group.flags |= Group::kOnDemand;
  const CapturedLog log;
  const std::string bytes = build.write();
  EXPECT_EQ(std::string(16, 'A') + zeros(16) + "BBBBBBBB" + zeros(0xFD8),
            bytes);
  EXPECT_EQ(sha256(bytes), hash_of(module));
  EXPECT_EQ(0x1000u, build.out.image_end);
  const std::string names(45, ' ');
  EXPECT_EQ(
      "\nmod .text (on_demand)    LMA: 1000    Pages: 1\n"
      "  NAME " +
          names +
          "      SIZE   PRE-GAP       LMA       VMA  FILE OFF\n"
          "  -----" +
          std::string(45, '-') +
          "  --------  --------  --------  --------  --------\n"
          "  a    " +
          names +
          "        10         0      1000  10001000         0\n"
          "  b    " +
          names +
          "         8        10      1020  10001020        20\n"
          "  " +
          std::string(60, '-') +
          "  --------  --------  --------  --------\n"
          "  Total" +
          names + "                1000 (segment aligned by fd8)\n\n",
      log.text());
}

TEST(ContentWriter, SectionsWithoutContentsLeaveTheGapBefore) {
  Build build;
  add_header(build.image, "a", 0x1000, 1, "c", "A");
  add_header(build.image, "b", 0x1005, 0x100, "", "B");
  add_header(build.image, "c", 0x1800, 1, "c", "C");
  auto& module = add_module(build.out, "mod");
  Group& empty = build.group(module, "b");
  build.group(module, "a b c");
  const CapturedLog log;
  EXPECT_EQ(padded("A", 5) + padded("C", 0xFFB), build.write());
  EXPECT_EQ(0u, empty.file_offset);
  EXPECT_NE(std::string::npos,
            log.text().find("         0 (segment aligned by 0)\n\n"));
}

TEST(ContentWriter, SourcesThatAreShortOrReplaced) {
  Build build;
  add_header(build.image, "long", 0x1000, 8, "c", "short");
  add_header(build.image, "beyond", 0x1008, 8, "c", "x").file_offset = 1000;
  add_header(build.image, "room", 0x1010, 8, "c", "12345678");
  add_header(build.image, "small", 0, 2, "", "ab?");
  add_header(build.image, "equal", 0, 8, "", "ABCDEFGH");
  add_header(build.image, "large", 0, 9, "", "ABCDEFGHI");
  const std::string start = padded("short", 16);
  const struct {
    const char* replacement;
    const char* message;
    std::string bytes;
  } kCases[] = {
      {"room", "no exception", "12345678"},
      {"room<small", "no exception", padded("ab", 8)},
      {"room<equal", "no exception", "ABCDEFGH"},
      {"room<large",
       "Replacement section too large to fit into the placeholder", ""},
      {"o:room<lost", "Section replacement header lost not found", ""},
  };
  for (const auto& item : kCases) {
    build.out.modules.clear();
    build.group(add_module(build.out, "m"),
                std::string("long beyond ") + item.replacement);
    const CapturedLog log;
    std::ostringstream stream;
    EXPECT_EQ(item.message, message_of([&] {
                write_module_contents(build.out, stream, "");
              }));
    EXPECT_EQ(start + item.bytes, stream.str().substr(0, 24)) << item.message;
    if (std::string(item.replacement) == "room<small") {
      EXPECT_NE(std::string::npos, log.text().find("  room < small   "));
    }
  }
}

TEST(ContentWriter, AddonGroupsKeepTheirDistance) {
  const struct {
    std::uint32_t generation;
    std::uint32_t kind;
    std::uint32_t lma;
    std::uint32_t alignment;
    std::size_t pad;
  } kCases[] = {
      // The base ends at 1004 (of its page only its section counts).
      {kKelp18, 1, 0x1024, 4, 0x20},  {kKelp25, 1, 0x1024, 16, 0x20},
      {kKelp30, 1, 0x1043, 32, 0x20}, {kKelp18, 1, 0x1023, 32, 0},
      {kKelp18, 1, 0x1024, 0, 0},     {kKelp18, 0, 0x1024, 4, 0},
      {kKelp18, 2, 0x1024, 4, 0},     {kKelp15, 2, 0x1024, 4, 0},
      {kKelp18, 1, 0x1024, 4096, 0},
  };
  for (const auto& item : kCases) {
    Build build(item.generation);
    add_header(build.image, "base", 0x1000, 4, "c", "BASE");
    add_header(build.image, "addon", item.lma, 1, "c", "X").alignment =
        item.alignment;
    build.group(add_module(build.out, "base"), "base");
    auto& addon = add_module(build.out, "addon");
    addon.module_kind = item.kind;
    Group& group = build.group(addon, "addon");
    const CapturedLog log(3);
    EXPECT_EQ(padded("BASE", 0x1000 + item.pad) + padded("X", 0x1000),
              build.write());
    EXPECT_EQ(0x1000 + item.pad, group.file_offset);
    EXPECT_EQ(sha256(padded("X", 0x1000)), hash_of(addon));
    EXPECT_EQ(
        item.pad != 0,
        log.text().find("--------\n"
                        "Section not aligned in file correctly\n"
                        "section group aligned by 20\n") != std::string::npos);
  }
}

TEST(ContentWriter, FirstGroupOfAllIsNotAligned) {
  Build build;
  add_header(build.image, "a", 0x1234, 1, "c", "X").alignment = 1;
  auto& addon = add_module(build.out, "addon");
  addon.module_kind = 1;
  build.group(addon, "a");
  const CapturedLog log;
  EXPECT_EQ(padded("X", 0x1000), build.write());
}

TEST(ContentWriter, AddonsOfGeneration15HaveTheirOwnFiles) {
  const TempDir dir;
  Build build(kKelp15);
  add_header(build.image, "a", 0x1000, 1, "c", "A");
  auto& base = add_module(build.out, "base");
  build.group(base, "a");
  auto& addon = add_module(build.out, "addon");
  addon.module_kind = 1;
  addon.uuid = Uuid(std::array<std::uint8_t, 16>{});
  build.group(addon, "a");
  const CapturedLog log;
  const std::string page = padded("A", 0x1000);
  EXPECT_EQ(page, build.write(dir.file("fw")));
  const std::string path =
      dir.file("fw_00000000-0000-0000-0000-000000000000.bin");
  EXPECT_EQ(page, read_file(path));
  EXPECT_EQ(0x1000u, build.out.image_end);
  EXPECT_NE(std::string::npos,
            log.text().find("\nkELP1.5: Creating pkg addon module " + path +
                            "\n\naddon .text    LMA"));
  // Where the file can't be made, the hash is right all the same, and the
  // position of a failed stream is all ones.
  addon.hash = {};
  build.write("/nowhere/fw");
  EXPECT_EQ(hash_of(base), hash_of(addon));
  EXPECT_NE(std::string::npos, log.text().find("  fffffffffffffffe\n"));
}

TEST(ContentWriter, BuiltInModulesAndUnknownGenerations) {
  Build build(7);
  EXPECT_EQ("", build.write());
  auto& module = add_module(build.out, "rom");
  module.load_type = 0;
  EXPECT_EQ("Not recignized manifest type", message_of([&] { build.write(); }));
  build.out.binary_ver = kKelp30;
  const CapturedLog log;
  EXPECT_EQ("", build.write());
  EXPECT_EQ("INFO: Skipping built-in module (sects inc in base_fw) rom\n",
            log.text());
  EXPECT_EQ(zeros(32), hash_of(module));
}

// Counts what is written and keeps none of it.
class CountingBuffer : public std::streambuf {
 public:
  std::uint64_t count = 0;

 private:
  std::streamsize xsputn(const char*, std::streamsize size) override {
    count += static_cast<std::uint64_t>(size);
    return size;
  }
};

TEST(ContentWriter, RoomBeyondTheFileCostsNoMemory) {
  Build build;
  add_header(build.image, "a", 0x1000, 0x2000001, "c", "A");
  build.group(add_module(build.out, "m"), "a");
  const CapturedLog log;
  CountingBuffer buffer;
  std::ostream stream(&buffer);
  write_module_contents(build.out, stream, "");
  EXPECT_EQ(0x2001000u, buffer.count);
}

}  // namespace
}  // namespace tova_fw_builder
