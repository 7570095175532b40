#include "input_map/fw_image_map.h"

#include <gtest/gtest.h>

#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

TEST(FwImageMap, ReadsATripleInItsOrder) {
  const TempDir dir;
  const std::string table =
      dir.write("map", "Idx\n0 .text 2 1000 2000 1 2**4\nCONTENTS, LOAD\n");
  const std::string elf = dir.write("elf", "ABCDEF");
  const std::string nm = dir.write("nm", "1000 T main\n");
  const std::string nm_2 = dir.write("nm_2", "2000 T main\n2000 T other\n");
  const std::string none = dir.write("none", "");
  FwImageMap map;
  const CapturedLog log(3);
  map.read_image_map(table, elf, nm);
  EXPECT_EQ(
      0u, log.text().find("Reading FW Image Map...\n  Memmap: " + table +
                          "\n  ELF   : " + elf + "\n  NM    : " + nm +
                          "\nLoaded 1 symbols from file: " + nm + "\nNAME  "));
  map.read_image_map(none, elf, nm_2);
  EXPECT_EQ(0x1000u, map.find_symbol("main").address);  // the first ELF's
  EXPECT_EQ(0x2000u, map.find_symbol("other").address);
  EXPECT_FALSE(map.find_symbol("none").valid);
  const auto text = map.find_section(".text");
  text->stream->seekg(text->file_offset);
  EXPECT_EQ('B', text->stream->get());
  EXPECT_EQ(nullptr, map.find_section(".tex"));
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
  const std::string often = dir.write("often", "1 T a\n2 T b\n3 T c\n");
  const CapturedLog log;
  FwImageMap map;
  for (int i = 0; i < 200; ++i) {
    map.read_image_map(none, none, often);
    const std::string number = std::to_string(1000 + i);
    map.read_image_map(none, none,
                       dir.write("own", number + " T own" + number + "\n" +
                                            number + " T shared\n"));
  }
  EXPECT_LT(map.symbols.size(), 9u);
  std::size_t entries = 0;
  for (const auto& table : map.symbols) entries += table.entries.size();
  EXPECT_LT(entries, 2 * 204u);
  EXPECT_EQ(0x1000u, map.find_symbol("shared").address);
  EXPECT_EQ(3u, map.find_symbol("c").address);
  for (int i = 1000; i < 1200; ++i) {
    const auto own = map.find_symbol("own" + std::to_string(i));
    EXPECT_EQ(std::stoul(std::to_string(i), nullptr, 16), own.address);
  }
}

}  // namespace
}  // namespace tova_fw_builder
