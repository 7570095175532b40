#include "layout/memory_description.h"

#include <gtest/gtest.h>

#include "layout/map_parts.h"
#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

// A bound section with separate addresses.
std::shared_ptr<FwOutMap::Section> section(const std::string& name,
                                           std::uint32_t vma, std::uint32_t lma,
                                           std::uint32_t size) {
  auto result = std::make_shared<FwOutMap::Section>();
  result->name = name;
  result->header = std::make_shared<Header>();
  result->header->vma = vma;
  result->header->lma = lma;
  result->header->size = size;
  return result;
}

void add_dyn_mem(FwOutMap& map, const FwOutMap::Section& from) {
  map.dyn_mem.push_back(std::make_unique<FwOutMap::Section>());
  map.dyn_mem.back()->name = from.name;
  map.dyn_mem.back()->header = from.header;
}

FwOutMap::MemoryClass area(std::uint32_t base, std::uint32_t size) {
  return {"ram", base, base + size, size};
}

TEST(MemoryDescription, QueriesLookAtTheEndsOfGroups) {
  FwOutMap map;
  auto& module = add_module(map, "m");
  Group& reaching = add_group(module, Group::kText, "");
  reaching.sections = {section("low", 0x1100, 1, 0), section("a", 0x1F00, 1, 0),
                       section("over", 0x2000, 1, 0)};
  Group& inside = add_group(module, Group::kText, "");
  inside.sections = {section("in", 0x1800, 7, 0), section("in2", 0x1800, 7, 0)};
  const auto ram = area(0x1000, 0x1000);
  EXPECT_EQ("in", highest_by_vma(map, ram)->name);
  EXPECT_EQ("low", lowest_by_vma(map, ram)->name);
  EXPECT_EQ(nullptr, highest_by_lma(map, ram));
  EXPECT_EQ("low", lowest_by_lma(map, area(0, 8))->name);
  add_dyn_mem(map, *section("dyn", 0x9000, 0x1234, 0));
  EXPECT_EQ("dyn", highest_by_vma(map, ram)->name);  // outside, but better
  EXPECT_EQ("dyn", lowest_by_lma(map, ram)->name);   // alone inside
  EXPECT_EQ("dyn", highest_by_lma(map, ram)->name);
  EXPECT_EQ(nullptr, lowest_by_vma(map, area(0x5000, 0x1000)));
}

struct Written {
  std::string file;
  std::string log;
  std::string fault;
};

// Writes a description of one class with one section.
Written describe(const FwOutMap::MemoryClass& ram,
                 const std::shared_ptr<FwOutMap::Section>& only) {
  const TempDir dir;
  FwOutMap map;
  map.memory_classes = {ram};
  add_group(add_module(map, "m"), Group::kText, "").sections = {only};
  const CapturedLog log;
  Written result;
  result.fault =
      message_of([&] { write_memory_description(map, dir.path(), "fw"); });
  result.file = read_file(dir.file("fw.xml"));
  result.log = log.text();
  return result;
}

TEST(MemoryDescription, WritesTheClassesThatAreUsed) {
  const std::string head = "<memory_footprint elf_name=\"fw\">\n";
  const std::string element = head + "<memory_class name=\"ram\">\n<size>";
  const std::string end = "</memory_class>\n</memory_footprint>\n";
  const std::string none = head + "</memory_footprint>\n";
  const struct {
    FwOutMap::MemoryClass ram;
    std::uint32_t vma, lma, size;
    std::string file;
  } kCases[] = {
      {area(0x10000, 0x1000), 0x10000, 0, 1,
       element + "0x1000</size>\n<offset>0x1000</offset>\n" + end},
      {area(0x10000, 0x9000), 0x14800, 0, 0x900,
       element + "0x1800</size>\n<offset>0x6000</offset>\n" + end},
      // By load address, since the virtual one lies elsewhere.
      {area(0x10000, 0x1000), 0, 0x10000, 0x1001,
       element + "0x2000</size>\n<offset>0x2000</offset>\n" + end},
      // The top is the base; the load address is far off.
      {area(0x10000, 0x1000), 0x10000, 0, 0, none},
      {area(0x10000, 0x1000), 1, 1, 1, none},
      // Cut to 24 bits.
      {area(0x10000, 0x1000), 0x10000, 0, 0x1000000,
       element + "0</size>\n<offset>0</offset>\n" + end},
  };
  for (const auto& item : kCases) {
    const Written result =
        describe(item.ram, section("s", item.vma, item.lma, item.size));
    EXPECT_EQ("no exception", result.fault);
    EXPECT_EQ(item.file, result.file) << item.vma;
  }
}

TEST(MemoryDescription, LogAndFaults) {
  const std::string start =
      "Create memory description file:\n memory_class name : ram\n";
  const auto ram = area(0x10000, 0x1000);
  EXPECT_EQ(start +
                "  VMA_highest_address: 0x00011000\n"
                "  LMA_highest_address: 0x00011000\n",
            describe(ram, section("s", 0x10000, 0x10000, 1)).log);
  EXPECT_EQ(start + "  empty\n", describe(ram, section("s", 1, 1, 1)).log);
  // The end of the section wraps.
  const Written wrapped =
      describe(ram, section("s", 0x10FFF, 0x10000, 0xFFFF0000));
  EXPECT_EQ("Highest address 4096 is lower than lowest 69631 address found",
            wrapped.fault);
  EXPECT_EQ("<memory_footprint elf_name=\"fw\">\n", wrapped.file);
  // An unaligned base above the wrapped top, which is not below the lowest.
  FwOutMap map;
  map.memory_classes = {area(0x10800, 0x1000)};
  add_dyn_mem(map, *section("in", 0x10801, 0, 0xFFFF0000));
  add_dyn_mem(map, *section("low", 0, 0, 0));
  const CapturedLog log;
  EXPECT_EQ(
      "Highest address 4096 is lower than memory class ram base address",
      message_of([&] { write_memory_description(map, "/nowhere", "fw"); }));
}

}  // namespace
}  // namespace tova_fw_builder
