// Binding, connection and checks, from definitions to the bound map.
#include <gtest/gtest.h>

#include "layout/rom_build.h"

namespace tova_fw_builder {
namespace {

constexpr char kStart[] = "binary_ver 1.8\nmax_data 0\n";
constexpr char kSections[] =
    "text 10 11000 1000 0 2**2 calrx;text2 10 13000 3000 0 2**2 calrx;"
    "tie 0 11004 1000 0 2**2 x;tie2 0 0 1000 0 2**2 x;data 8 11020 1020 0 2**2 "
    "cald;"
    "bss 1001 14000 4000 0 2**2 a;bss0 1 0 0 0 2**2 a;odd 1 0 0 0 2**2 c;"
    "none 1 0 7000 0 2**2 -;full 1 0 0 0 2**2 ca;";

TEST(Binding, Faults) {
  const std::string module = "module M\n";
  const std::string kType = "Connecting M failed: Invalid section type";
  const std::string kKind = "Connecting M failed: Invalid segment type";
  const std::string kEntry = "Connecting M failed: Double entry point defined";
  const std::string kPart = "Partially mapped module M";
  const struct {
    std::string definition;
    std::string fault;
    bool in_rom_too = true;
  } kCases[] = {
      {module + "group text\nsection ep text", "no exception"},
      {module + "group rodata\nsection text", kType, false},
      {module + "group rodata\nsection data", "no exception"},
      {module + "group bss\nsection data", kType, false},
      {module + "group bss\nsection bss", "no exception"},
      {module + "group text\nsection ep bss", kType, false},
      {module + "group bss\nsection odd", kKind, false},
      {module + "group bss\nsection none", kKind, false},
      {module + "group bss\nsection full", kKind, false},
      {module + "group text\nsection text",
       "Connecting M failed: No entrypoint defined for module M"},
      {"module l M\ngroup text\nsection text", "no exception"},
      {module + "group text\nsection ep text\nsection ep tie", kEntry},
      {module + "group text\nentry 0\nsection ep text", kEntry},
      {module + "group text\nsection gone", kPart + ", section: 0"},
      {"module o M\ngroup bss\nsection bss\ngroup text\nsection gone",
       kPart + ", section: 1"},
      {"module o M\ngroup text\nsection gone\ngroup bss\nsection bss", kPart},
      {module + "group text\nsection ep text < gone", kPart + ", section: 0"},
      {"dyn_mem gone", "Section header not found for gone"},
      {module + "export first\nexport gone",
       "Required symbol to export not found: gone"},
  };
  for (const auto& item : kCases) {
    const std::string definition = kStart + item.definition + "\n";
    EXPECT_EQ(item.fault, build_rom(definition, kSections, "", false).fault)
        << definition;
    EXPECT_EQ(item.in_rom_too ? item.fault : "no exception",
              build_rom(definition, kSections).fault)
        << definition;
  }
}

TEST(Binding, SortsAndFillsGroups) {
  std::string many = "group text\nsection ep text2\nsection o gone\n";
  for (int i = 0; i < 20; ++i) many += "section tie\nsection tie2\n";
  const RomBuild result =
      build_rom(kStart + ("module M\ntype 0\nstack_size 99\n" + many) +
                    "group on_demand rodata\nsection none\nsection data\n"
                    "module b B\nuuid 00000000-0000-0000-0000-000000000001\n"
                    "group rodata\nsection data\n",
                kSections);
  ASSERT_EQ("no exception", result.fault);
  const auto& module = *result.map->modules.at(0);
  const auto& text = *module.groups.at(0);
  ASSERT_EQ(41u, text.sections.size());
  for (std::size_t i = 0; i < 40; ++i) {  // ties stay as written
    EXPECT_EQ(i % 2 == 0 ? "tie" : "tie2", text.sections[i]->name);
  }
  EXPECT_EQ(0x0003001Fu, text.flags);  // pages: (2000 + FFF + 10) / 1000
  EXPECT_EQ(0x13000u, module.entry_point);
  EXPECT_EQ(0x99u, module.stack_size);
  // The section without a flag leaves them to the next; (5FE0 + FFF + 1).
  EXPECT_EQ(0x00060167u, module.groups.at(1)->flags);
  // A built-in module's groups are no load segments.
  EXPECT_EQ(0x00010123u, result.map->modules.at(1)->groups.at(0)->flags);
}

TEST(Binding, TakesOutWhatIsAbsent) {
  const RomBuild result = build_rom(
      kStart +
          std::string("ignore gone\nignore odd\ndyn_mem bss0\n"
                      "module M\ntype 0\nexport second\nexport first\n"
                      "export o gone\nmod_cfg 1\nmod_cfg 2\n"
                      "group rodata\nsection o gone\n"
                      "group bss\nsection o gone\nsection bss\n"
                      "module o O\nmod_cfg 1\ngroup text\nsection gone\n"
                      "section text\ngroup bss\nsection gone\n"
                      "module E\ngroup text\nsection o gone\n"
                      "module d D\nuuid 00000000-0000-0000-0000-000000000001\n"
                      "mod_cfg 1\ngroup bss\nsection o bss0 < gone\n"),
      kSections);
  const std::string optional =
      "Section header gone not found, marked as optional\n"
      "Removing optional section gone\n";
  EXPECT_EQ(optional + optional +
                "Removing empty section gruop: .rodata\n"
                "Warning: Section header gone not found\n"
                "Warning: Section header gone not found\n" +
                optional +
                "Removing empty section gruop: .text\n"
                "Warning: Section replacement header gone not found\n"
                "invalid section 0/2 found for module: O\n\n"
                "invalid section 1/2 found for module: O\n\n"
                "Warning: Erasing unreferenced module O\n"
                "Warning: Erasing unreferenced module E\n"
                "Warning: Section marked to ignore gone not found\n"
                "Section marked to ignore odd\n"
                "Exporting symbol: first\n"
                "Optional symbol to export not found: gone\n"
                "Exporting symbol: second\n"
                "Warning: Unreferenced loadable section data\n"
                "Warning: Unreferenced loadable section text\n"
                "Warning: Unreferenced loadable section text2\n",
            result.log);
  ASSERT_EQ(2u, result.map->modules.size());
  EXPECT_EQ(2u, result.map->modules[0]->stack_size);
  EXPECT_EQ(2u, result.map->modules[1]->cfg_offset);
  EXPECT_EQ(3u, result.map->mod_cfg_total);
  EXPECT_EQ("first", result.map->exported_symbols.at(0).name);
  EXPECT_EQ(2u, result.map->exported_symbols.size());
  // Only the writer has a use for the replacement.
  EXPECT_EQ("no exception", result.fault);
}

TEST(Checks, AllocOnlyGroupsInBetween) {
  const std::string kNote =
      "Alloc-only section is placed in between other sections \n"
      "firts alloc-only section base address     : 1000\n"
      "last non-alloc-only section base address  : 2000\n\n";
  const struct {
    const char* generation;
    std::string groups;  // of one letter each
    std::string flags;   // of m
    std::string log;
  } kCases[] = {{"1.8", "hlm", "ca", kNote}, {"2.5", "mlh", "la", kNote},
                {"3.0", "lm", "ra", kNote},  {"1.5", "lm", "xa", ""},
                {"1.8", "lm", "xa", kNote},  {"1.8", "lm", "da", kNote},
                {"1.8", "em", "xa", ""},     {"1.8", "mh", "xa", ""},
                {"1.8", "lh", "xa", ""}};
  for (const auto& item : kCases) {
    std::string definition = "binary_ver " + std::string(item.generation) +
                             "\nmax_data 0\nmodule l M\n";
    for (const char name : item.groups) {  // bit 6 doesn't count
      definition += std::string("group on_demand bss\nsection ") + name + "\n";
    }
    EXPECT_EQ(item.log, build_rom(definition,
                                  "l 1 0 1000 0 2**2 a;h 1 0 3000 0 2**2 a;"
                                  "e 1 0 2000 0 2**2 a;"
                                  "m 1 0 2000 0 2**2 " +
                                      item.flags)
                            .log);
  }
}

TEST(Checks, UuidTailsAreUniqueButInGeneration15) {
  const std::string text = "group bss\nsection bss\n";
  const auto fault_of = [&](const std::string& generation,
                            const std::string& tail) {
    const RomBuild result =
        build_rom("binary_ver " + generation +
                      "\nmodule l A\nuuid "
                      "00000000-0000-0000-0000-000000000001\n" +
                      text + "module l B\nuuid 00000000-0000-0000-0001-" +
                      tail + "\n" + text,
                  kSections);
    // What is unreferenced is told ahead of these checks.
    EXPECT_TRUE(result.log.ends_with("Unreferenced loadable section text2\n"));
    return result.fault;
  };
  EXPECT_EQ("no exception", fault_of("1.5", "000000000001"));
  for (const char* generation : {"1.8", "2.5", "3.0"}) {
    EXPECT_EQ("UUID last 6 bytes is not unique for module B",
              fault_of(generation, "000000000001"));
    EXPECT_EQ("no exception", fault_of(generation, "100000000001"));
  }
}

}  // namespace
}  // namespace tova_fw_builder
