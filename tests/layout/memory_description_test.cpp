#include "layout/memory_description.h"

#include <gtest/gtest.h>

#include "layout/rom_build.h"
#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

std::string name_of(const FwOutMap::Section* section) {
  return section == nullptr ? "nothing" : section->name;
}

TEST(MemoryDescription, QueriesLookAtTheEndsOfGroups) {
  const std::string definition =
      "binary_ver 1.5\nmodule l M\n"
      "group bss\nsection low\nsection a\nsection over\n"
      "group bss\nsection in\nsection in2\n";
  const std::string table =
      "low 0 1100 1 0 2**2 a;a 0 1f00 1 0 2**2 a;over 0 2000 1 0 2**2 a;"
      "in 0 1800 7 0 2**2 a;in2 0 1800 7 0 2**2 a;dyn 0 9000 1234 0 2**2 a";
  const FwOutMap::MemoryClass ram{"ram", 0x1000, 0x2000, 0x1000};
  const FwOutMap::MemoryClass far{"far", 0x5000, 0x6000, 0x1000};
  const RomBuild plain = build_rom(definition, table);
  EXPECT_EQ("in", name_of(highest_by_vma(*plain.map, ram)));
  EXPECT_EQ("low", name_of(lowest_by_vma(*plain.map, ram)));
  EXPECT_EQ("nothing", name_of(highest_by_lma(*plain.map, ram)));
  EXPECT_EQ("low", name_of(lowest_by_lma(*plain.map, {"", 0, 8, 8})));
  const RomBuild dyn = build_rom("dyn_mem dyn\n" + definition, table);
  EXPECT_EQ("dyn", name_of(highest_by_vma(*dyn.map, ram)));  // but outside
  EXPECT_EQ("dyn", name_of(lowest_by_lma(*dyn.map, ram)));   // alone inside
  EXPECT_EQ("nothing", name_of(lowest_by_vma(*dyn.map, far)));
}

TEST(MemoryDescription, FileLogAndFaults) {
  const std::string element = "<memory_class name=\"ram\">\n<size>";
  const std::string end = "</offset>\n</memory_class>\n";
  const std::string kVma = "  VMA_highest_address: 0x000";
  const std::string kLma = "  LMA_highest_address: 0x000";
  const struct {
    const char* area;     // base and size of the class
    const char* section;  // size, VMA and LMA
    std::string file;
    std::string log;
    std::string fault = "no exception";
  } kCases[] = {
      {"10000 1000", "1 10000 0",
       element + "0x1000</size>\n<offset>0x1000" + end, kVma + "11000\n"},
      {"10000 9000", "900 14800 0",
       element + "0x1800</size>\n<offset>0x6000" + end, kVma + "16000\n"},
      // By load address, since the virtual one lies elsewhere.
      {"10000 1000", "1001 0 10000",
       element + "0x2000</size>\n<offset>0x2000" + end, kLma + "12000\n"},
      {"10000 1000", "0 10000 10000", "", kVma + "10000\n" + kLma + "10000\n"},
      {"10000 1000", "1 1 1", "", "  empty\n"},
      // Cut to 24 bits.
      {"f000 2000", "1000000 10000 0",
       element + "0</size>\n<offset>0x1000" + end,
       "  VMA_highest_address: 0x01010000\n"},
      // The end of the section wraps.
      {"10000 1000", "ffff0000 10fff 0", "", kVma + "01000\n",
       "Highest address 4096 is lower than lowest 69631 address found"},
  };
  for (const auto& item : kCases) {
    const RomBuild built =
        build_rom("memory_class ram " + std::string(item.area) +
                      "\ndyn_mem s\nbinary_ver 1.5\n",
                  "s " + std::string(item.section) + " 0 2**2 a");
    const TempDir dir;
    const CapturedLog log;
    EXPECT_EQ(item.fault, message_of([&] {
                write_memory_description(*built.map, dir.path(), "fw");
              }));
    EXPECT_EQ("<memory_footprint elf_name=\"fw\">\n" + item.file +
                  (item.fault == "no exception" ? "</memory_footprint>\n" : ""),
              read_file(dir.file("fw.xml")));
    EXPECT_EQ("Create memory description file:\n memory_class name : ram\n" +
                  item.log,
              log.text());
  }
  // A lower section beyond the class, so that only its base is above the top.
  const RomBuild built =
      build_rom("memory_class ram 10800 1000\ndyn_mem s\ndyn_mem z\n",
                "s ffff0000 10801 0 0 2**2 a;z 0 0 0 0 2**2 a");
  EXPECT_EQ("Highest address 4096 is lower than memory class ram base address",
            message_of([&] {
              write_memory_description(*built.map, "/nowhere", "fw");
            }));
}

}  // namespace
}  // namespace tova_fw_builder
