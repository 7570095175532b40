#include "input_map/fw_image_map.h"

#include <gtest/gtest.h>

#include <sstream>

#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

std::shared_ptr<FwImageMap::SectionHeader> add(FwImageMap& map,
                                               const std::string& name,
                                               std::uint32_t size,
                                               bool load = false) {
  map.sections[name] = std::make_shared<FwImageMap::SectionHeader>();
  map.sections[name]->size = size;
  map.sections[name]->load = load;
  return map.sections[name];
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

TEST(FwImageMap, StreamSectionReplacesAnEarlierOne) {
  FwImageMap map;
  add(map, "keys", 99, true);
  map.add_stream_section("keys", std::make_shared<std::istringstream>("12345"));
  const auto keys = map.find_section("keys");
  EXPECT_EQ(5u, keys->size);
  EXPECT_EQ(0xFFFFFFFFu, keys->index);
  EXPECT_EQ(0u, keys->alignment);
  EXPECT_FALSE(keys->load);
}

TEST(FwImageMap, WarnsOfLoadableSectionsThatNothingOwns) {
  FwImageMap map;
  for (const char* name : {"z", "a", "held"}) add(map, name, 1, true);
  add(map, "plain", 1);
  const auto owner = map.find_section("held");
  const CapturedLog log;
  map.warn_unreferenced();
  EXPECT_EQ(
      "Warning: Unreferenced loadable section a\n"
      "Warning: Unreferenced loadable section z\n",
      log.text());
}

}  // namespace
}  // namespace tova_fw_builder
