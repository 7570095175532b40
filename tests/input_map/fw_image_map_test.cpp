#include "input_map/fw_image_map.h"

#include <gtest/gtest.h>

#include "input_map/elf_list.h"
#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

ElfList list_of(const std::string& text) {
  std::istringstream in(text);
  return read_elf_list(in);
}

TEST(ElfList, FirstWordOfEachLineCounts) {
  const ElfList list = list_of("a.elf x\r\n \t b.map\n  \n");
  ASSERT_EQ(1u, list.size());
  EXPECT_EQ("a.elf", list[0].elf);
  EXPECT_EQ("b.map", list[0].memmap);
  EXPECT_EQ("", list[0].nm);
}

TEST(ElfList, EveryTripleMustBeWholeAndEndInALineFeed) {
  EXPECT_TRUE(list_of("").empty());
  EXPECT_TRUE(read_elf_list("/dev/zero").empty());
  for (const char* text : {"a\nb\nc", "a\nb\n", "a", "a\nb\nc\n\n"}) {
    EXPECT_EQ(
        "Invalid number of lines in ELF list. Must be list of pairs "
        "<elf, memmap, nm>",
        message_of([&] { list_of(text); }))
        << text;
  }
}

TEST(FwImageMap, ReadsATripleInItsOrder) {
  const TempDir dir;
  const std::string table =
      dir.write("map", "Idx\n0 .text 2 1000 2000 1 2**4\nCONTENTS, LOAD\n");
  const std::string elf = dir.write("elf", "ABCDEF");
  const std::string nm = dir.write("nm", "1000 T main\n");
  const std::string nm_2 = dir.write("nm_2", "2000 T main\n2000 T other\n");
  const std::string none = dir.write("none", "");
  FwImageMap map;
  const CapturedLog quiet;
  map.read_image_map(table, elf, nm);
  map.read_image_map(none, elf, nm_2);
  EXPECT_EQ(0x1000u, map.find_symbol("main").address);  // the first ELF's
  EXPECT_EQ(0x2000u, map.find_symbol("other").address);
  EXPECT_FALSE(map.find_symbol("none").valid);
  const auto text = map.find_section(".text");
  text->stream->seekg(text->file_offset);
  EXPECT_EQ('B', text->stream->get());
  EXPECT_EQ(nullptr, map.find_section(".tex"));
  map.add_stream_section(
      ".text", std::make_shared<std::istringstream>(std::string(70000, 'x')));
  EXPECT_EQ(70000u, map.find_section(".text")->size);
  const auto fault = [&](auto... paths) {
    return message_of([&] { map.read_image_map(paths...); });
  };
  EXPECT_EQ("Failed to open file: x", fault("x", "y", "z"));
  EXPECT_EQ("Failed to open file: y", fault(none, "y", "z"));
  EXPECT_EQ("Failed to open file: z", fault(none, elf, "z"));
}

// However many ELFs there are, and however often they name a symbol.
TEST(FwImageMap, KeepsTheFirstSymbolOfANameInFewTables) {
  const TempDir dir;
  const std::string none = dir.write("none", "");
  const CapturedLog quiet;
  FwImageMap map;
  for (int i = 1000; i < 1200; ++i) {
    const std::string number = std::to_string(i);
    map.read_image_map(none, none,
                       dir.write("own", number + " T own" + number + "\n" +
                                            number + " T shared\n"));
  }
  EXPECT_LT(map.symbols.size(), 9u);
  EXPECT_EQ(0x1000u, map.find_symbol("shared").address);
  EXPECT_EQ(0x1007u, map.find_symbol("own1007").address);
}

}  // namespace
}  // namespace tova_fw_builder
