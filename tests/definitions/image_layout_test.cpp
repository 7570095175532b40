#include "definitions/image_layout.h"

#include <gtest/gtest.h>

#include "definitions/layout_text.h"
#include "support/captured_log.h"

namespace tova_fw_builder {
namespace {

TEST(ImageLayout, SingleValues) {
  const FwOutMap map = read_layout(
      "binary_name OLD\nbinary_name DEMO # remark\nbinary_ver 1.8\n"
      "binary_ver 2.5\nload_offset 0x2000\nhw_buf_ba FFFFFFFF\n"
      "hw_buf_size -1\nmax_data 7fffffff\n");
  EXPECT_EQ("DEMO", map.binary_name);
  EXPECT_EQ(0x20005u, map.binary_ver);
  EXPECT_EQ(0x2000u, map.load_offset);
  EXPECT_EQ(0xFFFFFFFFu, map.hw_buf_ba);
  EXPECT_EQ(0xFFFFFFFFu, map.hw_buf_size);
  EXPECT_EQ(0x7FFFFFFFu, map.max_data);
  EXPECT_EQ(~std::uint64_t{0}, read_layout("max_data -1\n").max_data);
  EXPECT_EQ("A", read_layout("binary_name A\nbinary_name\n").binary_name);
  for (const auto& [word, value] : std::map<std::string, std::uint32_t>{
           {"1.5", 0x10005}, {"1.8", 0x10008}, {"3.0", 0x30000}}) {
    EXPECT_EQ(value, read_layout("binary_ver " + word + "\n").binary_ver);
  }
}

TEST(ImageLayout, ListsAndTheWordThatStays) {
  const FwOutMap map = read_layout(
      "dyn_mem .a\ndyn_mem\nignore .b .c\nignore\n"
      "memory_class hi FFFFF000 1000\nmemory_class dead\n"
      "memory_class lo 10\n");
  ASSERT_EQ(2u, map.dyn_mem.size());
  EXPECT_EQ(".a", map.dyn_mem[0]->name);
  EXPECT_EQ("dyn_mem", map.dyn_mem[1]->name);
  EXPECT_EQ((std::vector<std::string>{".b", "ignore"}), map.ignore);
  ASSERT_EQ(3u, map.memory_classes.size());
  EXPECT_EQ("hi", map.memory_classes[0].name);
  EXPECT_EQ(0xFFFFF000u, map.memory_classes[0].base);
  EXPECT_EQ(0x1000u, map.memory_classes[0].size);
  EXPECT_EQ(0u, map.memory_classes[0].end);
  EXPECT_EQ("dead", map.memory_classes[1].name);
  EXPECT_EQ(0xDEADu, map.memory_classes[1].base);
  EXPECT_EQ(0xDEADu, map.memory_classes[1].size);
  EXPECT_EQ(0x20u, map.memory_classes[2].end);
}

TEST(ImageLayout, ModuleKinds) {
  CapturedLog log(3);
  const FwOutMap map = read_layout(
      "module x\nmodule o x\nmodule b x\nmodule ba x\nmodule d x\n"
      "module da x\nmodule l x\nmodule\nmodule o\nmodule x o\n");
  EXPECT_EQ(
      "Reading FW Image Layout (ROM mode Off)...\n"
      " module: x (loadable) (base)\n"
      " module: x (loadable) (addon) (optional)\n"
      " module: x (builtin) (base)\n"
      " module: x (builtin) (base) (auto-init)\n"
      " module: x (loadable) (addon)\n"
      " module: x (loadable) (addon) (auto-init)\n"
      " module: x (loadable) (addon)\n"
      " module: module (loadable) (base)\n"
      " module: o (loadable) (addon) (optional)\n"
      " module: x (loadable) (base)\n",
      log.text());
  ASSERT_EQ(10u, map.modules.size());
  const std::uint32_t kinds[] = {0, 1, 0, 0, 1, 1, 2, 0, 1, 0};
  for (std::size_t i = 0; i < 10; ++i) {
    EXPECT_EQ(kinds[i], map.modules[i]->module_kind) << i;
  }
}

TEST(ImageLayout, RomModeShowsInTheLogAlone) {
  CapturedLog log(3);
  FwOutMap map;
  map.rom_mode = true;
  read_text(map, "");
  EXPECT_EQ("Reading FW Image Layout (ROM mode On)...\n", log.text());
}

TEST(ImageLayout, FaultsWithTheirLines) {
  const std::pair<const char*, const char*> cases[] = {
      {"foo\n", "1: [foo] Unknown parameter"},
      {"\n \t\nBinary_ver 1.5\n", "3: [Binary_ver] Unknown parameter"},
      {"binary_ver 2.0\n", "1: [binary_ver] Unknown binary version"},
      {"binary_ver 1.50\n", "1: [binary_ver] Unknown binary version"},
      {"binary_ver\n", "1: [binary_ver] Unknown binary version"},
      {"load_offset\n", "invalid stoi argument"},
      {"load_offset 80000000\n", "stoi argument out of range"},
      {"hw_buf_size 80000000\n", "stoi argument out of range"},
      {"max_data 80000000\n", "stoi argument out of range"},
      {"hw_buf_ba\n", "invalid stoul argument"},
      {"hw_buf_ba 100000000\n", "stoul argument out of range"},
      {"memory_class\n", "invalid stoul argument"},
      // Lines that go back through two and three blocks keep their numbers,
      // and statements of a module don't count behind a foreign line.
      {"module m\nfoo\n", "2: [foo] Unknown parameter"},
      {"module m\npin 0\n\nsample_rates 1\nfoo\n",
       "5: [foo] Unknown parameter"},
      {"module m\ngroup bss\npin 0\nfoo\n", "4: [foo] Unknown parameter"},
      {"module m\ndyn_mem .a\ntype 1\n", "3: [type] Unknown parameter"},
      {"export a\n", "1: [export] Unknown parameter"},
      {"module m\nsection a\n", "2: [section] Unknown parameter"},
  };
  for (const auto& [text, error] : cases) {
    EXPECT_EQ(error, layout_failure(text)) << text;
  }
}

TEST(ImageLayout, BlocksGiveLinesBack) {
  const FwOutMap map = read_layout(
      "module a\ngroup text\nsection .t\n\npin 1\nsample_rates 3\n \n"
      "group bss\ntype 5\nmodule b\nignore .i\n");
  ASSERT_EQ(2u, map.modules.size());
  const FwOutMap::Module& module = *map.modules[0];
  ASSERT_EQ(2u, module.groups.size());
  EXPECT_EQ(".t", module.groups[0]->sections.at(0)->name);
  EXPECT_TRUE(module.groups[1]->sections.empty());
  EXPECT_EQ(3u, module.pins.at(0).sample_rates);
  EXPECT_EQ(5, module.type);
  EXPECT_EQ("b", map.modules[1]->name);
  EXPECT_EQ(27, map.modules[1]->type);
  EXPECT_EQ(std::vector<std::string>{".i"}, map.ignore);
}

// Only texts that don't come from files can end without a line end.
TEST(ImageLayout, LastLineWithoutLineEnd) {
  const auto read = [](const std::string& text) {
    FwOutMap map;
    read_text(map, text);
    return map;
  };
  EXPECT_EQ("A", read("binary_name A").binary_name);
  EXPECT_EQ(27, read("module m\ntype 1").modules.at(0)->type);
  EXPECT_EQ(12u, read("module m\npin 0\nchannel_cfg c")
                     .modules.at(0)
                     ->pins.at(0)
                     .channel_cfg);
  EXPECT_EQ("", read("module m\npin 0\nbinary_name A").binary_name);
}

}  // namespace
}  // namespace tova_fw_builder
