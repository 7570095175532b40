// What modules take, and what the image is made of, by load addresses.
#include <gtest/gtest.h>

#include <sstream>

#include "memory_map/measured.h"

namespace tova_fw_builder {
namespace {

std::string modules_of(const MemoryMap& map) {
  std::ostringstream text;
  for (const auto& m : map.modules) {
    text << m.name << (m.built_in ? "*" : "") << ' ' << m.text << ' '
         << m.rodata << ' ' << m.bss << " gaps " << m.gaps << " padding "
         << m.padding << " pages " << m.pages << '>' << m.packed_pages << '\n';
  }
  return text.str();
}

std::string groups_of(const MemoryMap& map) {
  std::ostringstream text;
  for (const auto& group : map.groups) {
    text << group.module << ' ' << group.kind << ' ' << std::hex
         << group.address << std::dec << ' ' << group.pages << ':' << std::hex;
    for (const AddressSpan& span : group.unused) {
      text << ' ' << span.begin << '-' << span.end;
    }
    text << '\n';
  }
  return text.str();
}

TEST(Modules, GapsPaddingAndPages) {
  // Text: 256 bytes at 1000 and 512 at 3000; 7936 between them, 3584 behind,
  // three pages that could be one. Rodata: a whole page. Bss: half of one.
  const std::string definition =
      text_module("BASE", {"a", "b"}) +
      "group rodata\nsection c\ngroup bss\nsection d\n";
  const Elf elf = {
      "a 100 9000 1000 text;b 200 9100 3000 text;c 1000 a000 10000 rodata;"
      "d 800 b000 20000 bss;"};
  const MemoryMap map = measure(definition, {elf});
  EXPECT_EQ("BASE 768 4096 2048 gaps 7936 padding 5632 pages 5>3\n",
            modules_of(map));
  EXPECT_EQ(768u + 4096 + 2048 + 7936 + 5632, map.modules[0].total());
  EXPECT_EQ("BASE text 1000 3: 1100-3000 3200-4000\nBASE rodata 10000 1:\n",
            groups_of(map));
  EXPECT_EQ(4u, map.image.pages);
}

TEST(Modules, OverlapsAndOddBeginnings) {
  // b begins inside a and ends behind it; the pages are counted from where the
  // group begins, not from a page boundary.
  EXPECT_EQ(
      "M 768 0 0 gaps 0 padding 3456 pages 1>1\n",
      modules_of(measure(text_module("M", {"a", "b"}),
                         {{"a 100 1000 1800 text;b 200 2000 1880 text;"}})));
  // One byte more than a page, but the pages go by the section that begins
  // last: so the image has one, and nothing pads.
  EXPECT_EQ(
      "M 4098 0 0 gaps 0 padding 0 pages 1>1\n",
      modules_of(measure(text_module("M", {"a", "b"}),
                         {{"a 1001 1000 1000 text;b 1 3000 1010 text;"}})));
}

TEST(Modules, BuiltInOnesAreInNoImageOfTheirOwn) {
  const MemoryMap map = measure(
      "module b PART\nuuid 5A3C0001-7B1E-4C52-9D40-0000000000AB\n"
      "group text\nsection ep b\n" +
          text_module("BASE", {"a", "b"}),
      {{"a 10 1000 1000 text;b 10 2000 2000 text;"}});
  EXPECT_EQ(
      "PART* 16 0 0 gaps 0 padding 4080 pages 1>1\n"
      "BASE 32 0 0 gaps 4080 padding 4080 pages 2>1\n",
      modules_of(map));
  EXPECT_EQ("BASE text 1000 2: 1010-2000 2010-3000\n", groups_of(map));
  EXPECT_EQ(2u, map.image.pages);
  EXPECT_EQ("5a3c0001-7b1e-4c52-9d40-0000000000ab", map.modules[0].uuid);
}

TEST(Modules, GroupsWithoutContentsAreInNoImage) {
  // Empty text, and a missing one that is optional.
  const MemoryMap map = measure(
      "module M\nuuid 5A3C0001-7B1E-4C52-9D40-0000000000AB\n"
      "group text\nsection ep a\ngroup rodata\nsection o missing\n",
      {{"a 0 1000 1000 text;"}});
  EXPECT_EQ("", groups_of(map));
  EXPECT_EQ(0u, map.image.pages);
  EXPECT_EQ("M 0 0 0 gaps 0 padding 0 pages 0>0\n", modules_of(map));
}

TEST(Image, NameGenerationAndVersion) {
  for (const char* generation : {"1.5", "1.8", "2.5", "3.0"}) {
    EXPECT_EQ(generation,
              measure("", {}, std::string("binary_ver ") + generation + "\n")
                  .image.generation);
  }
  const MemoryMap none = measure("", {}, "");
  EXPECT_EQ("", none.image.generation + none.image.version + none.image.name);
  // Of the module of type 0, wherever it stands.
  const MemoryMap map = measure(
      "binary_name DEMO\n" + text_module("A", {"a"}) + "version_major 9\n" +
          text_module("B", {"b"}) +
          "type 0\nversion_major 1\nversion_minor 4\nversion_build 27\n",
      {{"a 10 1000 1000 text;b 10 2000 2000 text;"}});
  EXPECT_EQ("DEMO", map.image.name);
  EXPECT_EQ("1.4.0.27", map.image.version);
}

}  // namespace
}  // namespace tova_fw_builder
