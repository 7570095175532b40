#include "layout/group_binding.h"

#include <gtest/gtest.h>

#include "layout/map_parts.h"
#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

std::string order_of(const Group& group) {
  std::string names;
  for (const auto& section : group.sections) names += section->name + " ";
  return names;
}

TEST(GroupBinding, KindOfASectionMustBeThatOfItsGroup) {
  const std::string kNoKind = "Invalid segment type";
  const std::string kOther = "Invalid section type";
  const struct {
    std::string flags;
    std::string fault_in[3];  // .text, .rodata, .bss
  } kCases[] = {
      {"calxd", {"no exception", kOther, kOther}},  // code counts first
      {"cald", {kOther, "no exception", kOther}},
      {"a", {kOther, kOther, "no exception"}},
      {"ca", {kNoKind, kNoKind, kNoKind}},
      {"cl", {kNoKind, kNoKind, kNoKind}},
      {"", {kNoKind, kNoKind, kNoKind}},
  };
  for (const auto& item : kCases) {
    FwImageMap map;
    add_header(map, "s", 0, 1, item.flags);
    for (std::uint32_t type = 0; type < 3; ++type) {
      for (const bool check : {true, false}) {
        FwOutMap out;
        Group& group = add_group(add_module(out, "m"), type, "s");
        EXPECT_EQ(check ? item.fault_in[type] : "no exception",
                  message_of([&] { attach_group(group, map, check, true); }))
            << item.flags << " in " << type;
      }
    }
  }
}

TEST(GroupBinding, SortsAndSetsFlags) {
  FwImageMap map;
  add_header(map, "none", 0x5000, 1, "");
  add_header(map, "high", 0x3000, 0x10, "calrx");
  add_header(map, "tie", 0x1000, 0, "d");
  add_header(map, "low", 0x1000, 0x10, "d").on_demand = true;
  FwOutMap out;
  auto& module = add_module(out, "m");
  Group& group = add_group(module, Group::kText, "o:gone high ep:tie low");
  const CapturedLog log(3);
  attach_group(group, map, false, true);
  EXPECT_EQ("tie low high gone ", order_of(group));  // ties as written
  // The first bound section of the statement gives bits 0 to 4, and the
  // definition takes bit 6. Pages: (2000 + FFF + 10) / 1000.
  EXPECT_EQ(0x0003001Fu, group.flags);
  EXPECT_EQ(3u, group_pages(group));
  EXPECT_EQ(0x10001000u, group.entry);
  EXPECT_EQ(
      "  Attaching headers to group .text (0)\n"
      "Section header gone not found, marked as optional\n",
      log.text());

  // A header without flags leaves the word to the next one.
  Group& built_in = add_group(module, Group::kBss, "none high");
  built_in.on_demand = true;
  attach_group(built_in, map, false, false);
  EXPECT_EQ("high none ", order_of(built_in));
  EXPECT_EQ(0x0003025Bu, built_in.flags);  // without load
}

TEST(GroupBinding, IncompleteGroupStaysAsItIs) {
  FwImageMap map;
  add_header(map, "b", 0x2000, 1, "cax");
  add_header(map, "a", 0x1000, 1, "cax");
  for (const char* sections : {"b a gone", "b a<gone"}) {
    FwOutMap out;
    Group& group = add_group(add_module(out, "m"), Group::kText, sections);
    const CapturedLog log;
    attach_group(group, map, true, true);
    EXPECT_FALSE(is_complete(group));
    EXPECT_EQ(0u, order_of(group).find("b a "));
    EXPECT_EQ(0x13u, group.flags);
    const std::string kind =
        group.sections.size() == 3 ? "header " : "replacement header ";
    EXPECT_EQ("Warning: Section " + kind + "gone not found\n", log.text());
  }
}

TEST(GroupBinding, OneEntryAtMost) {
  FwImageMap map;
  add_header(map, "a", 0x1000, 0, "x");
  add_header(map, "b", 0x2000, 0, "x");
  for (const bool by_statement : {true, false}) {
    FwOutMap out;
    Group& group = add_group(add_module(out, "m"), Group::kText,
                             by_statement ? "ep:a b" : "ep:a ep:b");
    if (by_statement) group.entry = 0;
    EXPECT_EQ("Double entry point defined",
              message_of([&] { attach_group(group, map, true, true); }));
  }
}

TEST(GroupBinding, PagesWrapAt32Bits) {
  FwImageMap map;
  FwOutMap out;
  Group& group = add_group(add_module(out, "m"), Group::kText, "o:x a b o:y");
  EXPECT_EQ(0u, group_pages(group));
  add_header(map, "a", 0x10, 1, "x");
  add_header(map, "b", 0x20, 0xFFFFFFFF, "x");
  group.sections[1]->header = map.find_section("a");
  group.sections[2]->header = map.find_section("b");
  // The first reference has no header: 20 - FFFFFFFF + FFF + FFFFFFFF.
  EXPECT_EQ(0x1u, group_pages(group));
  group.sections.erase(group.sections.begin());
  EXPECT_EQ(1u, group_pages(group));  // 10 + FFF + FFFFFFFF = 100E
}

TEST(GroupBinding, RemovesWhatIsAbsent) {
  FwImageMap map;
  add_header(map, "a", 0, 1, "x");
  FwOutMap out;
  out.mod_cfg_total = 1;
  auto& first = add_module(out, "first");
  add_group(first, Group::kBss, "o:gone");
  Group& text = add_group(first, Group::kText, "o:gone o:a<lost a");
  first.mod_cfg.resize(2);
  auto& absent = add_module(out, "absent");
  add_group(absent, Group::kText, "gone");
  absent.required = false;
  absent.mod_cfg.resize(5);
  auto& last = add_module(out, "last");
  add_group(last, Group::kText, "a");
  last.mod_cfg.resize(1);
  for (const auto& module : out.modules) {
    for (const auto& group : module->groups) {
      attach_group(*group, map, true, true);
    }
  }
  const CapturedLog log;
  remove_optional(*first.groups[0]);
  remove_optional(text);
  EXPECT_EQ("a a ", order_of(text));  // the lost replacement keeps its place
  remove_empty_groups(first);
  ASSERT_EQ(1u, first.groups.size());
  erase_unreferenced(out);
  ASSERT_EQ(2u, out.modules.size());
  EXPECT_EQ(1u, out.modules[0]->cfg_offset);
  EXPECT_EQ(3u, out.modules[1]->cfg_offset);
  EXPECT_EQ(4u, out.mod_cfg_total);
  EXPECT_EQ(
      "Removing optional section gone\n"
      "Removing optional section gone\n"
      "Removing empty section gruop: .bss\n"
      "invalid section 0/1 found for module: absent\n\n"
      "Warning: Erasing unreferenced module absent\n",
      log.text());
}

}  // namespace
}  // namespace tova_fw_builder
