#include "layout/module_connection.h"

#include <gtest/gtest.h>

#include "layout/map_parts.h"
#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

TEST(ModuleConnection, TakesEntryAndStackFromCompleteGroups) {
  FwImageMap image;
  add_header(image, "text", 0x1000, 0x10, "calx");
  add_header(image, "bss", 0x2000, 0x1001, "a");
  FwOutMap out;
  auto& module = add_module(out, "m");
  add_group(module, Group::kText, "ep:text");
  add_group(module, Group::kBss, "bss");
  module.stack_size = 77;
  const CapturedLog log(3);
  connect_module(module, false, image);
  EXPECT_EQ(0u, log.text().find("Connecting module m\n  Attaching"));
  EXPECT_EQ(0x10001000u, module.entry_point);
  EXPECT_EQ(77u, module.stack_size);
  auto& other = add_module(out, "n");
  other.type = 0;
  other.module_kind = 2;  // needs no entry
  add_group(other, Group::kBss, "bss");
  add_group(other, Group::kText, "text");
  connect_module(other, false, image);
  EXPECT_EQ(0u, other.entry_point);
  EXPECT_EQ(2u, other.stack_size);
}

TEST(ModuleConnection, ErrorsOfAModuleCarryItsName) {
  FwImageMap image;
  add_header(image, "text", 0x1000, 0x10, "calx");
  const struct {
    const char* sections;
    bool rom_mode;
    const char* message;
  } kCases[] = {
      {"text", false,
       "Connecting m failed: No entrypoint defined for module m"},
      {"ep:text", false, "no exception"},
      {"text gone", false, "no exception"},  // judged later
      {"ep:text ep:text", true,
       "Connecting m failed: Double entry point defined"},
  };
  for (const auto& item : kCases) {
    FwOutMap out;
    auto& module = add_module(out, "m");
    add_group(module, Group::kText, item.sections);
    const CapturedLog log;
    EXPECT_EQ(item.message, message_of([&] {
                connect_module(module, item.rom_mode, image);
              }));
  }
  FwOutMap out;
  auto& module = add_module(out, "m");
  add_group(module, Group::kBss, "text");
  EXPECT_EQ("Connecting m failed: Invalid section type",
            message_of([&] { connect_module(module, false, image); }));
  connect_module(module, true, image);  // any section fits in ROM mode
}

TEST(ModuleConnection, BindsWhatBelongsToTheWholeImage) {
  FwImageMap image;
  add_header(image, "here", 0, 1, "a");
  for (const char* name : {"b", "a"}) {
    image.symbols[name] = {true, 'T', 7, name};
  }
  FwOutMap out;
  out.ignore = {"lost", "here"};
  out.dyn_mem.push_back(std::make_unique<FwOutMap::Section>());
  out.dyn_mem[0]->name = "here";
  out.exports = {{"b", false}, {"a", true}, {"c", true}};
  const CapturedLog log;
  connect_modules(out, image);
  EXPECT_EQ(
      "Warning: Section marked to ignore lost not found\n"
      "Section marked to ignore here\n"
      "Exporting symbol: a\nExporting symbol: b\n"
      "Optional symbol to export not found: c\n",
      log.text());
  EXPECT_EQ(image.find_section("here"), out.dyn_mem[0]->header);
  ASSERT_EQ(2u, out.exported_symbols.size());
  EXPECT_EQ("a", out.exported_symbols[0].name);
  out.exports["c"] = false;
  EXPECT_EQ("Required symbol to export not found: c",
            message_of([&] { connect_modules(out, image); }));
  out.dyn_mem[0]->name = "lost";
  EXPECT_EQ("Section header not found for lost",
            message_of([&] { connect_modules(out, image); }));
}

}  // namespace
}  // namespace tova_fw_builder
