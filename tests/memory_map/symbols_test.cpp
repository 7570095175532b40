// What stands in the ELFs besides what was bound.
#include <gtest/gtest.h>

#include <sstream>

#include "memory_map/measured.h"

namespace tova_fw_builder {
namespace {

std::string symbols_of(const MemoryMap& map) {
  std::ostringstream text;
  for (const auto& symbol : map.symbols) {
    text << symbol.name << ' ' << section_of(map, symbol) << '/'
         << owner_of(map, symbol) << ' ' << std::hex << symbol.address << ' '
         << std::dec << symbol.size << '\n';
  }
  return text.str();
}

std::string left_out_of(const MemoryMap& map) {
  std::ostringstream text;
  for (const auto& section : map.left_out) {
    text << section.section << '@' << section.elf << ' ' << std::hex
         << section.address << ' ' << std::dec << section.size << '\n';
  }
  return text.str();
}

TEST(Symbols, ReachToTheNextOneInTheirSection) {
  // The section a has 256 bytes from 1000, and b 16 right behind it. Of two at
  // 1010 the last by name has the bytes. What has no place in memory counts
  // for nothing, wherever its number points.
  const MemoryMap map = measure(
      text_module("M", {"a", "b"}),
      {{"a 100 1000 1000 text;b 10 1100 2000 text;",
        "00001000 T first\n00001010 t twin_b\n00001010 T twin_a\n"
        "000010ff b last\n00001100 D other\n00001110 T behind\n"
        "00000fff T ahead\n00001020 A absolute\n00001020 a local\n"
        "00001020 N debug\n00001020 n comment\n00001020 C common\n00001020 c "
        "small\n"
        "         U undefined\n00001020 w weak\n00001020 v weak_object\n"}});
  EXPECT_EQ(
      "twin_b a/M 1010 239\nfirst a/M 1000 16\nother b/M 1100 16\n"
      "last a/M 10ff 1\ntwin_a a/M 1010 0\n",
      symbols_of(map));
}

TEST(Symbols, LieInSectionsOfTheirOwnElf) {
  // Both ELFs have something at 1000 and a section b; the first b is bound. A
  // symbol at 2000 of the second ELF is in its own b, which is left out.
  const MemoryMap map =
      measure(text_module("M", {"a"}) + "group bss\nsection b\n",
              {{"a 10 1000 1000 text;b 20 2000 2000 bss;",
                "00001000 T one\n00002008 B three\n"},
               {"b 40 2000 3000 bss;x 8 1000 4000 bss;",
                "00001000 B two\n00002000 B four\n"}});
  EXPECT_EQ(
      "four b/ 2000 64\nthree b/M 2008 24\none a/M 1000 16\ntwo x/ 1000 8\n",
      symbols_of(map));
  EXPECT_EQ("b@1.elf 2000 64\nx@1.elf 1000 8\n", left_out_of(map));
}

TEST(Symbols, OfSectionsThatOverlap) {
  // c begins last before 1050 and ends at 1030: a holds it. 1200 is beyond.
  const MemoryMap map =
      measure(text_module("M", {"a", "c"}),
              {{"a 100 1000 1000 text;c 10 1020 2000 text;",
                "00001028 T in_c\n00001050 T in_a\n00001200 T nowhere\n"}});
  EXPECT_EQ("in_a a/M 1050 176\nin_c c/M 1028 8\n", symbols_of(map));
}

TEST(LeftOut, TakesRoomAndIsInNoGroup) {
  // Neither what takes no room, nor has no size, nor is a dyn_mem section, nor
  // the one whose bytes go into another's place, of the first ELF that has one.
  // The largest comes first.
  const MemoryMap map = measure(
      "dyn_mem heap\nmodule M\nuuid 5A3C0001-7B1E-4C52-9D40-0000000000AB\n"
      "group text\nsection ep a < source\n",
      {{"a 10 1000 1000 text;source 8 5000 5000 text;heap 10 2000 2000 bss;"
        "info 10 0 0 debug;none 0 3000 3000 bss;alone 4 3000 3000 bss;"
        "large 40 4000 4000 rodata;",
        "00004000 R constant\n00003000 B variable\n"},
       {"source 20 6000 6000 bss;"}});
  EXPECT_EQ("large@0.elf 4000 64\nsource@1.elf 6000 32\nalone@0.elf 3000 4\n",
            left_out_of(map));
  EXPECT_EQ("constant large/ 4000 64\nvariable alone/ 3000 4\n",
            symbols_of(map));
}

}  // namespace
}  // namespace tova_fw_builder
