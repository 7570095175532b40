#include "memory_map/map_text.h"

#include <gtest/gtest.h>

#include <sstream>

#include "memory_map/measured.h"

namespace tova_fw_builder {
namespace {

std::string printed(const MemoryMap& map, bool is_long = false,
                    const std::vector<BudgetResult>& budgets = {},
                    const MapChanges* changes = nullptr) {
  std::ostringstream out;
  print_map(out, map, budgets, changes, is_long, colours(false));
  return out.str();
}

TEST(MapText, TellsAllInTheOrderOfImportance) {
  // m is 4096 bytes from 1000: a has 512, b 16 of which 8 are a's, the buffer
  // the last 16; x is in no group and c, of 4 bytes, in no class.
  const MemoryMap map =
      measure("binary_name DEMO\nmemory_class m 1000 1000\n" +
                  text_module("M", {"a", "b", "c"}) + text_module("N", {"d"}),
              {{"a 200 1000 8000 text;b 10 11f8 9000 text;c 4 6000 9010 text;"
                "d 0 1800 a000 text;x 4 5000 5000 bss;",
                "00001004 T s\n00005000 B l\n"}},
              "binary_ver 1.8\nhw_buf_ba 1ff0\nhw_buf_size 20\n");
  EXPECT_EQ(R"(DEMO, generation 1.8, 2 pages of contents (8192 bytes)

Memory classes
  class  base        size  used  free    full
  m      0x00001000  4096   520  3576  12.7 %  [###.................]
  ~ the hardware buffer takes 16 bytes of what is free of sections

Modules
  module  text  rodata  bss  gaps  padding  pages    share
  M        532       0    0  3584     4076      2  100.0 %
  N          0       0    0     0        0      0    0.0 %
  all      532       0    0  3584     4076      2  100.0 %
  Page boundaries and gaps cost 7660 bytes; without gaps the groups would take 1 of 2 pages less (4096 bytes)

In memory, but in no group
  section  address     size  ELF
  x        0x00005000     4  0.elf

Outside the memory classes
  section  module  address     size  outside
  c        M       0x00006000     4        4

Overlaps
  address     size  section  module  and section  of module
  0x000011f8     8  a        M       b            M

In m
  address     size  section  module
  0x00001000   512  a        M
  0x000011f8    16  b        M
  0x00001208  1528           (free)
  0x00001800     0  d        N
  0x00001800  2032           (free)
  0x00001ff0    32  hw_buf   hw_buf

The largest symbols
  size  address     symbol  section  module
   508  0x00001004  s       a        M
     4  0x00005000  l       x

Budgets
  class  budget  bytes  used  left
  m      1K       1024   520  +504
)",
            printed(map, false, {{"m", "1K", 1024, 520}}));
}

TEST(MapText, ChangesComeFirst) {
  MapChanges changes;
  EXPECT_NE(std::string::npos,
            printed({}, false, {}, &changes)
                .find("\nNo size differs from the baseline.\n"));
  changes.parts = {{"f", "a", "M", 4, 20}, {"a", "", "", 9, 0}};
  changes.classes = {{"m", "", "", 4, 5}};
  EXPECT_EQ(R"(no binary_name, 0 pages of contents (0 bytes)

What grew since the baseline, and what shrank
  change  old  new  name         section  module
     +16    4   20  f            a        M
      -9    9    0  (no symbol)  a

Memory classes since the baseline
  change  old  new  name
      +1    4    5  m
)",
            printed({}, false, {}, &changes));
}

TEST(MapText, BarsAndShares) {
  // Each twentieth that is begun has its mark, the last one when all is full.
  const struct {
    std::uint64_t size, used, hw_buf;
    const char* row;
  } kCases[] = {
      {2000, 0, 0, "0.0 %  [....................]"},
      {2000, 1, 0, "0.1 %  [#...................]"},
      {2000, 100, 0, "5.0 %  [#...................]"},
      {2000, 102, 0, "5.1 %  [##..................]"},
      {2000, 100, 100, "5.0 %  [#~..................]"},
      {2000, 1, 1999, "0.1 %  [#~~~~~~~~~~~~~~~~~~~]"},
      {2000, 2000, 0, "100.0 %  [####################]"},
      {0x100000000, 0xFFFFFFFF, 0, "100.0 %  [####################]"},
      {0, 0, 0, "-"},
  };
  for (const auto& item : kCases) {
    MemoryMap map;
    map.classes = {{"c", 0, item.size, item.used, item.hw_buf, {}}};
    const std::string text = printed(map);
    EXPECT_NE(std::string::npos, text.find(std::string("  ") + item.row + '\n'))
        << item.row << text;
  }
}

TEST(MapText, LongListsEndEarly) {
  MemoryMap map;
  map.classes = {{"c", 0, 1000, 300, 0, {}}};
  for (std::uint32_t i = 0; i < 30; ++i) {
    map.sections.push_back({"a", "m", 10 * i, 10});
    map.classes[0].sections.push_back(i);
    map.symbols.push_back({"s", 0, false, i, 1});
  }
  map.overlaps = {{0, 1, 10, 1}};
  map.has_more_overlaps = true;
  const std::string text = printed(map);
  EXPECT_NE(std::string::npos, text.find("  and 20 more (--long shows them)"));
  EXPECT_NE(std::string::npos, text.find("  and 10 more (--long shows them)"));
  EXPECT_NE(std::string::npos, text.find("  and others behind these\n"));
  // What is free is told of what one sees.
  EXPECT_EQ(std::string::npos, text.find("(free)"));
  const std::string all = printed(map, true);
  EXPECT_EQ(std::string::npos, all.find("more"));
  EXPECT_NE(std::string::npos, all.find(" 700           (free)"));
}

TEST(MapText, BuiltInModulesAreInNoSum) {
  MemoryMap map;
  map.modules = {{"A", "", true, 10, 0, 0, 1, 2, 1, 1},
                 {"B", "", false, 20, 1, 3, 4, 2, 4, 2},
                 {"C", "", false, 70, 0, 0, 0, 0, 1, 1}};
  EXPECT_NE(std::string::npos, printed(map).find(R"(
  module  text  rodata  bss  gaps  padding  pages    share
  A *       10       0    0     1        2      1   13.0 %
  B         20       1    3     4        2      4   30.0 %
  C         70       0    0     0        0      1   70.0 %
  all       90       1    3     4        2      5  100.0 %
  * built in: counted again in the module that carries it
  Page boundaries and gaps cost 6 bytes; without gaps the groups would take 2 of 5 pages less (8192 bytes)
)")) << printed(map);
}

TEST(MapText, NamesArePrintable) {
  MemoryMap map;
  map.image.name = "\x1b[31m";
  map.left_out = {{"\x1b]0;t\x07", "e", 0, 1}};
  EXPECT_EQ(std::string::npos, printed(map).find('\x1b'));
}

}  // namespace
}  // namespace tova_fw_builder
