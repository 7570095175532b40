#include <gtest/gtest.h>

#include <sstream>

#include "input_map/fw_image_map.h"
#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

constexpr char kHead[] = "Idx Name\n";

void read(FwImageMap& map, const std::string& text) {
  std::istringstream table(text);
  read_section_table(map, table, std::make_shared<std::istringstream>());
}

TEST(SectionTable, ReadsAndPrintsSections) {
  FwImageMap map;
  // As objdump -h of a 32-bit ARM file prints it.
  read(map,
       "\n"
       "fw.elf:     file format elf32-littlearm\n"
       "\n"
       "Sections:\n"
       "Idx Name          Size      VMA       LMA       File off  Algn\n"
       "  0 .text         00000400  10000000  20000000  00000074  2**2\n"
       "                  CONTENTS, ALLOC, LOAD, READONLY, CODE\n"
       "  1 .bss          00000010  10000400  20000400  00000474  2**12\n"
       "                  ALLOC\n"
       " 12 .comment      0000002a  00000000  00000000  00000474  2**0\n"
       "                  CONTENTS,, READONLY , DATA RELOC, code\n");
  ASSERT_EQ(3u, map.sections.size());
  const auto& text = *map.sections[".text"];
  EXPECT_EQ(0x400u, text.size);
  EXPECT_EQ(0x10000000u, text.vma);
  EXPECT_EQ(0x20000000u, text.lma);
  EXPECT_EQ(0x74u, text.file_offset);
  EXPECT_EQ(4u, text.alignment);
  EXPECT_NE(nullptr, text.stream);
  EXPECT_EQ(12u, map.sections[".comment"]->index);
  EXPECT_EQ(4096u, map.sections[".bss"]->alignment);
}

// What a table may look like at its end and between its entries.
TEST(SectionTable, LinesThatCountAndLinesThatDont) {
  const std::pair<const char*, const char*> kCases[] = {
      {"Index\n0 a 1 2 3 4 2**2\nLOAD\n", ""},  // no line of the word Idx
      {" Idx\n\n x\n5\n0 a 1 2 3 4 2**2\nLOAD", "a:load "},
      {"Idx\n0 a 1 2 3 4 2**2\n", "a: "},  // the end is its flag line
      {"Idx\n0 a 1 2 3 4 2**2", ""},
      {"Idx\n0 a 1 2 3 4 2**2\n\n1 b 1 2 3 4 2**2\nLOAD\n", "a: b:load "},
      {"Idx\n0 a 1 2 3 4 2**2\n1 b 1 2 3 4 2**2\nLOAD\n", "a: "},
      {"Idx\n99999999999 a 1 2 3 4 2**2\nLOAD\n", ""},
      {"Idx\n7b ffffffff 0x2 3 4 2**2\n, LOAD\n", "b:load "},
  };
  for (const auto& [text, expected] : kCases) {
    FwImageMap map;
    read(map, text);
    std::string names;
    for (const auto& [name, header] : map.sections) {
      names += name + ":" + (header->load ? "load " : " ");
    }
    EXPECT_EQ(expected, names) << text;
  }
}

TEST(SectionTable, ColumnsThatAreNoNumbersLeaveNoAlignment) {
  for (const char* entry :
       {"0 a", "0 a 1 2 3 4", "0 a 1 2 3 4 **", "0 a g 2 3 4 2**2",
        "0 a 100000000 2 3 4 2**2", "0 a 1 2 3 0x 2**2", "0 a 1 2 3 4 16"}) {
    FwImageMap map;
    EXPECT_EQ("Not recognizeg alignment specified",
              message_of([&] { read(map, kHead + std::string(entry) + "\n"); }))
        << entry;
  }
}

TEST(SectionTable, AlignmentIsAPowerInDoublePrecision) {
  // 3**21 is 10460353203.
  const std::pair<const char*, std::uint32_t> kCases[] = {
      {"2**0", 1},
      {"2**12", 4096},
      {"3**2", 9},
      {"x0y0", 1},
      {"0**5", 0},
      {"2**31", 0x80000000},
      {"3**21", 0x6F7C52B3},
      {"2**62", 0},
      {"2**63", 0},
      {"2**4000000000", 0},
      {"99999999999**1", 0xFFFFFFFF},
      {"99999999999**9", 0},
      {"1**99999999999", 1}};
  for (const auto& [text, value] : kCases) {
    EXPECT_EQ(value, parse_alignment(text)) << text;
  }
}

TEST(SectionTable, SecondSectionOfAName) {
  const std::string plain = "0 a 1 2 3 4 2**2\nALLOC\n";
  const std::string loadable = "0 a 9 2 3 4 2**2\nLOAD\n";
  FwImageMap map;
  const CapturedLog log;
  read(map, kHead + loadable);
  read(map, std::string("2.elf: file\n") + kHead + plain);  // a second ELF
  EXPECT_EQ(9u, map.sections["a"]->size);
  EXPECT_EQ("Duplicated non-loadable section found: a\n", log.text());
  FwImageMap other;
  EXPECT_EQ("Duplicated section found: a",
            message_of([&] { read(other, kHead + plain + loadable); }));
}

}  // namespace
}  // namespace tova_fw_builder
