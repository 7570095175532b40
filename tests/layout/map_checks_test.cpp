#include "layout/map_checks.h"

#include <gtest/gtest.h>

#include "layout/group_binding.h"
#include "layout/map_parts.h"
#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

TEST(MapChecks, ModuleIsWhollyInOrWhollyOut) {
  FwImageMap image;
  add_header(image, "in", 0, 1, "x");
  const struct {
    const char* groups;  // one word a group
    bool required;
    const char* result;
  } kCases[] = {
      {"", true, "out"},
      {"in in", true, "in"},
      {"gone", true, "Partially mapped module m, section: 0"},
      {"gone gone", false, "out"},
      {"in gone", false, "Partially mapped module m, section: 1"},
      {"gone in", false, "Partially mapped module m"},
  };
  for (const auto& item : kCases) {
    FwOutMap out;
    auto& module = add_module(out, "m");
    module.required = item.required;
    std::istringstream words(item.groups);
    const CapturedLog log;
    for (std::string word; words >> word;) {
      attach_group(add_group(module, Group::kText, word), image, true, true);
    }
    std::string result;
    const std::string fault =
        message_of([&] { result = is_referenced(module) ? "in" : "out"; });
    EXPECT_EQ(item.result, result.empty() ? fault : result) << item.groups;
  }
}

TEST(MapChecks, NotesAllocOnlyGroupsInBetween) {
  FwImageMap image;
  add_header(image, "low", 0x1000, 1, "a");
  add_header(image, "mid", 0x2000, 1, "calx");
  add_header(image, "high", 0x3000, 1, "a");
  const char kNote[] =
      "Alloc-only section is placed in between other sections \n"
      "firts alloc-only section base address     : 1000\n"
      "last non-alloc-only section base address  : 2000\n\n";
  const struct {
    std::uint32_t generation;
    const char* groups;
    const char* log;
  } kCases[] = {
      {kKelp18, "high low mid", kNote},
      {kKelp25, "mid low high", kNote},
      {kKelp30, "low mid", kNote},
      {kKelp15, "low mid", ""},
      {0, "low mid", ""},
      {kKelp18, "mid high", ""},
      {kKelp18, "low high", ""},
      {kKelp18, "mid", ""},
  };
  for (const auto& item : kCases) {
    FwOutMap out;
    out.binary_ver = item.generation;
    auto& module = add_module(out, "m");
    std::istringstream words(item.groups);
    for (std::string word; words >> word;) {
      Group& group = add_group(module, Group::kBss, word);
      group.on_demand = true;  // bit 6 doesn't count
      attach_group(group, image, false, true);
    }
    const CapturedLog log;
    check_alloc_only(out);
    EXPECT_EQ(item.log, log.text()) << item.groups;
  }
}

TEST(MapChecks, UuidTailsAreUniqueButInGeneration15) {
  FwOutMap out;
  add_module(out, "first");
  add_module(out, "second");
  std::array<std::uint8_t, 16> bytes{};
  bytes[9] = 1;  // ahead of the last six
  out.modules[1]->uuid = Uuid(bytes);
  for (const auto generation : {kKelp18, kKelp25, kKelp30}) {
    out.binary_ver = generation;
    EXPECT_EQ("UUID last 6 bytes is not unique for module second",
              message_of([&] { check_alloc_only(out); }));
  }
  out.binary_ver = kKelp15;
  check_alloc_only(out);
  bytes[15] = 1;
  out.modules[1]->uuid = Uuid(bytes);
  check_uuid_tails(out);
}

}  // namespace
}  // namespace tova_fw_builder
