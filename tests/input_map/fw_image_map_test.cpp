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
  auto header = std::make_shared<FwImageMap::SectionHeader>();
  header->name = name;
  header->size = size;
  header->load = load;
  return map.sections[name] = header;
}

TEST(FwImageMap, ReadsATripleInItsOrder) {
  const TempDir dir;
  const std::string table =
      dir.write("map", "Idx\n0 .text 2 1000 2000 1 2**4\nCONTENTS, LOAD\n");
  const std::string elf = dir.write("elf", "ABCDEF");
  const std::string nm = dir.write("nm", "1000 T main\n");
  const std::string nm_2 = dir.write("nm_2", "2000 T main\n2000 T other\n");
  const std::string no_table = dir.write("map_2", "");
  FwImageMap map;
  {
    const CapturedLog log(3);
    map.read_image_map(table, elf, nm);
    EXPECT_EQ(0u, log.text().find(
                      "Reading FW Image Map...\n  Memmap: " + table +
                      "\n  ELF   : " + elf + "\n  NM    : " + nm +
                      "\nLoaded 1 symbols from file: " + nm + "\nNAME  "));
    map.read_image_map(no_table, elf, nm_2);
  }
  EXPECT_EQ(0x1000u, map.find_symbol("main").address);  // the first ELF's
  EXPECT_EQ(0x2000u, map.find_symbol("other").address);
  EXPECT_FALSE(map.find_symbol("none").valid);
  const auto text = map.find_section(".text");
  ASSERT_NE(nullptr, text);
  text->stream->seekg(text->file_offset);
  EXPECT_EQ('B', text->stream->get());
  EXPECT_EQ(nullptr, map.find_section(".tex"));
  const auto fault = [&](auto... paths) {
    return message_of([&] { map.read_image_map(paths...); });
  };
  EXPECT_EQ("Failed to open file: x", fault("x", "y", "z"));
  EXPECT_EQ("Failed to open file: y", fault(no_table, "y", "z"));
  EXPECT_EQ("Failed to open file: z", fault(no_table, elf, "z"));
}

TEST(FwImageMap, StreamSectionReplacesAndCountsAsADuplicate) {
  FwImageMap map;
  add(map, "keys", 99, true);
  map.add_stream_section("keys", std::make_shared<std::istringstream>("12345"));
  const auto keys = map.find_section("keys");
  EXPECT_EQ(5u, keys->size);
  EXPECT_EQ(0xFFFFFFFFu, keys->index);
  EXPECT_EQ(0u, keys->alignment);
  EXPECT_FALSE(keys->load);
}

TEST(FwImageMap, SizeChecksNameTheFirstOffender) {
  FwImageMap map;
  add(map, ".data", 0x1F);
  add(map, "b.guard", 0x10);
  add(map, "a.guard", 0x20);
  add(map, "guard", 0x99);
  map.check_section_size(".data", 0x1F);
  map.check_section_size("none", 0);
  map.check_suffix_size(".guard", 0x20);
  EXPECT_EQ(".data size 1f > max_allowed_size 1e",
            message_of([&] { map.check_section_size(".data", 0x1E); }));
  EXPECT_EQ("a.guard size 20 > max_allowed_size 0",
            message_of([&] { map.check_suffix_size(".guard", 0); }));
}

TEST(FwImageMap, WarnsOfLoadableSectionsThatNothingOwns) {
  FwImageMap map;
  add(map, "z", 1, true);
  add(map, "a", 1, true);
  add(map, "plain", 1);
  const auto owner = add(map, "held", 1, true);
  const CapturedLog log;
  map.warn_unreferenced();
  EXPECT_EQ(
      "Warning: Unreferenced loadable section a\n"
      "Warning: Unreferenced loadable section z\n",
      log.text());
}

}  // namespace
}  // namespace tova_fw_builder
