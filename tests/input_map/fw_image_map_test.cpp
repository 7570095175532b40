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

}  // namespace
}  // namespace tova_fw_builder
