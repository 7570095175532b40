#include "layout/content_writer.h"

#include <gtest/gtest.h>

#include <fstream>

#include "crypto/sha_hash.h"
#include "layout/rom_build.h"
#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

constexpr char kStart[] =
    "binary_ver 1.8\nmodule l mod\ngroup on_demand text\n";

std::array<std::uint8_t, 32> sha256(const std::string& text) {
  std::array<std::uint8_t, 32> digest;
  Sha256Hash hash(reinterpret_cast<const std::uint8_t*>(text.data()),
                  text.size());
  hash.final(digest.data());
  return digest;
}

TEST(ContentWriter, DistancesInTheFileAreThoseOfTheAddresses) {
  const RomBuild result =
      build_rom(kStart + std::string("section b < s\nsection a\n"),
                "b 8 2020 1020 0 2**2 c;a 10 2000 1000 2 2**2 c;"
                "s 2 0 0 0 2**2 -",
                "bbAAAAAAAAAAAAAAAA");
  EXPECT_EQ(filled(std::string(16, 'A'), 32) + filled("bb", 0xFE0),
            result.bytes);
  EXPECT_EQ(sha256(result.bytes), result.map->modules[0]->hash);
  EXPECT_EQ(0x1000u, result.map->image_end);
}

TEST(ContentWriter, WhatAGroupHolds) {
  const struct {
    const char* sections;
    const char* table;
    std::string bytes;
    const char* fault = "no exception";
  } kCases[] = {
      // A gap ahead of a section without contents stands ahead of the next.
      {"section a\nsection b\nsection c\n",
       "a 1 0 1000 0 2**2 c;b 100 0 1005 0 2**2 -;c 1 0 1800 2 2**2 c",
       filled("0", 5) + filled("2", 0xFFB)},
      {"section b\n", "b 100 0 1005 0 2**2 -", ""},
      // Bytes that the file doesn't have, and a section behind them.
      {"section a\nsection b\nsection c\n",
       "a 8 0 1000 8 2**2 c;b 8 0 1008 ffffffff 2**2 c;c 1 0 1010 0 2**2 c",
       filled("89", 16) + filled("0", 0xFF0)},
      {"section a < r\n", "a 2 0 0 0 2**2 c;r 2 0 0 4 2**2 -",
       filled("45", 0x1000)},
      {"section a\nsection b < r\n",
       "a 1 0 0 0 2**2 c;b 2 0 2 1 2**2 c;r 3 0 0 4 2**2 -", filled("0", 2),
       "Replacement section too large to fit into the placeholder"},
      {"section o a < lost\n", "a 2 0 0 0 2**2 c", "",
       "Section replacement header lost not found"},
  };
  for (const auto& item : kCases) {
    const RomBuild result = build_rom(std::string(kStart) + item.sections,
                                      item.table, "0123456789");
    EXPECT_EQ(item.fault, result.fault);
    EXPECT_EQ(item.bytes, result.bytes) << item.table;
  }
  const std::string large(100000, 'x');  // and as many zeros twice
  EXPECT_TRUE(filled(large, 0x4A000) ==
              build_rom(kStart + std::string("section a\n"),
                        "a 493e0 0 1000 0 2**2 c", large)
                  .bytes);
}

// Positions have 64 bits; the hole ahead takes no room on the disk.
TEST(ContentWriter, BeyondFourGibibytes) {
  const TempDir dir;
  const RomBuild result = build_rom(kStart + std::string("section a\n"),
                                    "a 1 0 1000 0 2**2 c", "A");
  std::ofstream out(dir.file("out"), std::ios_base::binary);
  out.seekp(1ll << 32);
  const CapturedLog log;
  write_module_contents(*result.map, out, "");
  EXPECT_EQ(1ull << 32, result.map->modules[0]->groups[0]->file_offset);
  EXPECT_EQ((1ull << 32) + 0x1000, result.map->image_end);
}

TEST(ContentWriter, AddonGroupsKeepTheirDistance) {
  const struct {
    const char* generation;
    const char* kind;
    const char* place;  // LMA, file offset, alignment; the base ends at 1004
    std::size_t pad;
  } kCases[] = {
      {"1.8", "d", "1024 4 2**2", 0x20}, {"2.5", "d", "1024 4 2**4", 0x20},
      {"3.0", "o", "1043 4 2**5", 0x20}, {"1.8", "d", "11024 4 2**5", 0x10020},
      {"1.8", "d", "1023 4 2**5", 0},    {"1.8", "d", "1024 4 2**99", 0},
      {"1.8", "l", "1024 4 2**2", 0},    {"1.5", "l", "1024 4 2**2", 0}};
  for (const auto& item : kCases) {
    const RomBuild result = build_rom(
        std::string("binary_ver ") + item.generation +
            "\nmodule d first\ngroup text\nentry 0\nsection base\nmodule " +
            item.kind + " addon\nuuid " +
            "00000000-0000-0000-0000-000000000001\n" +
            "group text\nentry 0\nsection addon\n",
        "base 4 0 1000 0 2**0 c;addon 1 0 " + std::string(item.place) + " c",
        "BASEX", true, 3, "/nowhere/fw");
    const bool own_file = item.generation == std::string("1.5");
    EXPECT_EQ(
        filled("BASE", own_file ? 0 : 0x1000 + item.pad) + filled("X", 0x1000),
        result.bytes);
    const auto& addon = *result.map->modules.at(1);
    EXPECT_EQ(own_file ? 0 : 0x1000 + item.pad, addon.groups[0]->file_offset);
    EXPECT_EQ(sha256(filled("X", 0x1000)), addon.hash);
    EXPECT_EQ(item.pad != 0,
              result.write_log.find("--------\n"
                                    "Section not aligned in file correctly\n"
                                    "section group aligned by ") !=
                  std::string::npos);
  }
}

TEST(ContentWriter, AddonsOfGeneration15HaveTheirOwnFiles) {
  const TempDir dir;
  const std::string definition =
      "binary_ver 1.5\nmodule d addon\n"
      "uuid abcdef01-0000-0000-0000-000000000000\n"
      "group text\nentry 0\nsection a\n";
  const std::string table = "a 1 0 1000 0 2**2 c";
  const RomBuild result =
      build_rom(definition, table, "A", true, 2, dir.file("fw"));
  const std::string path =
      dir.file("fw_ABCDEF01-0000-0000-0000-000000000000.bin");
  EXPECT_EQ(filled("A", 0x1000), read_file(path));
  EXPECT_EQ("", result.bytes);
  EXPECT_EQ(0u, result.write_log.find("kELP1.5: Creating pkg addon module " +
                                      path + "\n\naddon .text    LMA"));
  // Where the file can't be made the hash is right all the same, and the
  // position of a failed stream is all ones.
  const RomBuild failed =
      build_rom(definition, table, "A", true, 2, "/nowhere/fw");
  EXPECT_EQ(sha256(filled("A", 0x1000)), failed.map->modules[0]->hash);
  EXPECT_NE(std::string::npos, failed.write_log.find("  fffffffffffffffe\n"));
}

TEST(ContentWriter, BuiltInModulesAndUnknownGenerations) {
  EXPECT_EQ("no exception", build_rom("load_offset 0\n", "").fault);
  const std::string module = "module b rom\ngroup bss\nsection a\n";
  const std::string table = "a 1 0 1000 0 2**2 c";
  EXPECT_EQ("Not recignized manifest type", build_rom(module, table).fault);
  const RomBuild result = build_rom("binary_ver 3.0\n" + module, table);
  EXPECT_EQ("", result.bytes);
  EXPECT_EQ("INFO: Skipping built-in module (sects inc in base_fw) rom\n",
            result.write_log);
  EXPECT_EQ((std::array<std::uint8_t, 32>{}), result.map->modules[0]->hash);
}

}  // namespace
}  // namespace tova_fw_builder
