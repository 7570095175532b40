#include "definitions/module_statements.h"

#include <gtest/gtest.h>

#include "definitions/layout_text.h"
#include "support/captured_log.h"

namespace tova_fw_builder {
namespace {

FwOutMap::Module read(const std::string& statements) {
  FwOutMap map = read_layout("module m\n" + statements);
  return std::move(*map.modules.at(0));
}

std::string failure(const std::string& statements) {
  return layout_failure("module m\n" + statements);
}

TEST(ModuleStatements, EmptyBlockHasTheDefaults) {
  const auto module = read("");
  EXPECT_EQ(27, module.type);
  EXPECT_EQ(1u, module.affinity_mask);
  EXPECT_EQ(0u, module.instance_count);
  EXPECT_EQ("", module.uuid.text());
}

TEST(ModuleStatements, PlainValues) {
  const auto module = read(
      "uuid 01234567-89ab-cdef-0123-456789abcdef\nversion_major 70000\n"
      "version_minor -1\nversion_hotfix 3\nversion_build 4\ntype -2\n"
      "stack_size 0x1F\ncore_type 12\ndomain_types DP\ndomain_types\n");
  EXPECT_EQ("01234567-89AB-CDEF-0123-456789ABCDEF", module.uuid.text());
  EXPECT_EQ(4464, module.version.major);
  EXPECT_EQ(0xFFFF, module.version.minor);
  EXPECT_EQ(3, module.version.hotfix);
  EXPECT_EQ(4, module.version.build);
  EXPECT_EQ(-2, module.type);
  EXPECT_EQ(0x1Fu, module.stack_size);
  EXPECT_EQ(12u, module.core_type);
  EXPECT_TRUE(!module.domain_ll && module.domain_dp && !module.domain_rtos);
}

TEST(ModuleStatements, DisplayNameKeepsItsLastBlank) {
  EXPECT_EQ("Demo module ", read("name Demo module\n").display_name);
  EXPECT_EQ(" x  y ", read("name  x  y\n").display_name);
  EXPECT_EQ("", read("name\n").display_name);
  // The buffer holds 1023 characters, the blank ahead of the name included.
  const std::string text(1022, 'x');
  EXPECT_EQ(text, read("name " + text + "yz\n").display_name);
  EXPECT_EQ("a", read(std::string("name a\0b\n", 9)).display_name);
}

TEST(ModuleStatements, AffinityMask) {
  const std::pair<const char*, std::uint32_t> cases[] = {
      {"3", 3},          {"aF", 0xAF}, {"FACE", 0xFACE},         {"CORES", 3},
      {"core CORES", 3}, {"x 7", 70},  {"7FFFFFFF", 0x7FFFFFFF}, {"00", 0}};
  for (const auto& [words, value] : cases) {
    EXPECT_EQ(value,
              read("affinity_mask " + std::string(words) + "\n").affinity_mask)
        << words;
  }
}

TEST(ModuleStatements, InstanceCount) {
  const std::pair<const char*, std::uint32_t> cases[] = {
      {"10", 10},
      {"+1", 1},
      {"-1", 0xFFFFFFFF},
      {"07", 7},
      {"100", 100},
      {"CORES", 3},
      {"0 CORES", 3},
      // A single digit is a name like any other.
      {"7", 70}};
  for (const auto& [words, value] : cases) {
    EXPECT_EQ(
        value,
        read("instance_count " + std::string(words) + "\n").instance_count)
        << words;
  }
}

TEST(ModuleStatements, FaultsWithTheirLines) {
  const std::pair<const char*, const char*> cases[] = {
      {"affinity_mask 0x3\n", "2: [module] Undefined const 0x3"},
      {"affinity_mask\n", "2: [module] Undefined const affinity_mask"},
      {"affinity_mask CORES NO\n", "2: [module] Undefined const NO"},
      {"affinity_mask 80000000\n", "stoi argument out of range"},
      {"\ninstance_count 1\n", "3: [module] Undefined const 1"},
      {"instance_count 'A12\n", "2: [module] Undefined const 'A12"},
      {"instance_count '12\n", "2: [module] Undefined const '12"},
      {"instance_count }12\n", "2: [module] Undefined const }12"},
      {"instance_count 1x\n", "2: [module] Undefined const 1x"},
      {"instance_count x7\n", "invalid stoi argument"},
      {"instance_count |7\n", "invalid stoi argument"},
      {"instance_count (7\n", "invalid stoi argument"},
      {"instance_count 2147483648\n", "stoi argument out of range"},
      {"instance_count 00\n",
       "2: [00] Modules instance count must be greater than zero"},
      {"instance_count x NONE\n",
       "2: [NONE] Modules instance count must be greater than zero"},
      {"domain_types LL ll\n", "2: [domain_types] Undefined const ll"},
      {"uuid\n", "Wrong UUID format"},
      {"type\n", "invalid stoi argument"},
      {"core_type c\n", "invalid stoi argument"},
      {"stack_size 80000000\n", "stoi argument out of range"},
      {"group\n", "Invalid group type"},
      {"group on_demand\n", "Invalid group type"},
      {"group text on_demand\ngroup Text\n", "Invalid group type"},
      {"pin\n", "invalid stoi argument"},
      {"sched_caps 1\n", "invalid stoi argument"},
      {"sched_caps 10000 1\n", "invalid stoi argument"},
      {"sched_caps x 1\n", "invalid stoi argument"},
  };
  for (const auto& [text, error] : cases) {
    EXPECT_EQ(error, failure(text)) << text;
  }
}

TEST(ModuleStatements, ModCfgStopsAtTheFirstBadNumber) {
  const auto module = read(
      "mod_cfg 1 2 3 4 5 6 7 8 1f 10 11 12\nmod_cfg 1 x 3\n"
      "mod_cfg -1 4294967296 3\nmod_cfg\n");
  const std::vector<std::vector<std::uint32_t>> expected = {
      {1, 2, 3, 4, 5, 6, 7, 8, 0x1F, 10, 11},
      {1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
      {0xFFFFFFFF, 0xFFFFFFFF, 0, 0, 0, 0, 0, 0, 0, 0, 0},
      {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}};
  ASSERT_EQ(4u, module.mod_cfg.size());
  for (std::size_t i = 0; i < 4; ++i) {
    const ModuleConfig& c = module.mod_cfg[i];
    EXPECT_EQ(expected[i],
              (std::vector<std::uint32_t>{c.par_0, c.par_1, c.par_2, c.par_3,
                                          c.is_bytes, c.cps, c.ibs, c.obs,
                                          c.mod_flags, c.cpc, c.obls}))
        << i;
  }
}

TEST(ModuleStatements, SchedCapsTakeNoneOrTwoNumbers) {
  const auto module =
      read("sched_caps 1f 1 10002 80\nsched_caps\nsched_caps -1 -8000\n");
  ASSERT_EQ(3u, module.sched_caps.size());
  EXPECT_EQ(0x1F, module.sched_caps[0].sched_first);
  EXPECT_EQ(0x83, module.sched_caps[0].sched_flags);
  EXPECT_EQ(0, module.sched_caps[1].sched_first);
  EXPECT_EQ(0, module.sched_caps[1].sched_flags);
  EXPECT_EQ(0xFFFF, module.sched_caps[2].sched_first);
  EXPECT_EQ(0x8000, module.sched_caps[2].sched_flags);
}

TEST(ModuleStatements, ExportsBelongToTheImage) {
  const FwOutMap map = read_layout(
      "module m\nexport a\nexport o b\nexport o\nexport\n"
      "module n\nexport o a\nexport b o\n");
  EXPECT_EQ((std::map<std::string, bool>{
                {"a", true}, {"b", false}, {"export", false}, {"o", true}}),
            map.exports);
}

TEST(ModuleStatements, GroupsAndSections) {
  CapturedLog log(3);
  const auto module = read(
      "group text\nsection ep .a\nsection o .b < .c\nsection .d x .e\n"
      "group on_demand rodata\nsection\nsection ep\nsection <\n"
      "section ep o\nsection .f <\ngroup bss\n");
  EXPECT_EQ(
      "Reading FW Image Layout (ROM mode Off)...\n"
      " module: m (loadable) (base)\n"
      " group: .text\n"
      "  section: .a (entrypoint)\n"
      "  section: .b (optional)replacement: .c\n"
      "  section: .d\n"
      " group: .rodata (on_demand)\n"
      "  section: section\n"
      "  section:  (entrypoint)\n"
      "  section: <\n"
      "  section: o (entrypoint)\n"
      "  section: .f\n"
      " group: .bss\n",
      log.text());
  ASSERT_EQ(3u, module.groups.size());
  const auto& sections = module.groups[0]->sections;
  EXPECT_TRUE(sections.at(0)->entrypoint && !sections[0]->optional);
  EXPECT_TRUE(sections.at(1)->optional && !sections[1]->entrypoint);
  EXPECT_EQ(".c", sections[1]->replacement->name);
  EXPECT_FALSE(sections[1]->replacement->optional);
  EXPECT_EQ(nullptr, sections.at(2)->replacement);
  EXPECT_EQ(1u, module.groups[1]->type);
  EXPECT_TRUE(module.groups[1]->on_demand);
  EXPECT_EQ(nullptr, module.groups[1]->sections.at(2)->replacement);
  EXPECT_EQ(2u, module.groups[2]->type);
}

TEST(ModuleStatements, GroupEntries) {
  const auto entry_of = [](const std::string& lines) {
    return read("group text\n" + lines).groups.at(0)->entry;
  };
  EXPECT_EQ(0xFFFFFFFFu, entry_of(""));
  EXPECT_EQ(0x80000000u, entry_of("entry 80000000\n"));
  EXPECT_EQ(0xEu, entry_of("entry\n"));
  EXPECT_EQ(5u, entry_of("entry FFFFFFFF\nentry 5\n"));
  EXPECT_TRUE(read("group bss\nentry -1\n").groups.at(0)->explicit_entry);
  const std::pair<const char*, const char*> cases[] = {
      {"entry 0\nentry 1\n", "Double entry point defined"},
      {"entry 0\nentry x\n", "invalid stoul argument"},
      {"entry 100000000\n", "stoul argument out of range"}};
  for (const auto& [lines, error] : cases) {
    EXPECT_EQ(error, failure("group text\n" + std::string(lines)));
  }
}

TEST(ModuleStatements, Pins) {
  const auto module = read(
      "pin -1\nstream_type 1\nstream_type ff x\nsample_rates 1 0x10\n"
      "sample_rates 4\nsample_sizes 10001 2\nsample_containers -80000000\n"
      "channel_cfg 7 30\npin 2\nchannel_cfg\n");
  ASSERT_EQ(2u, module.pins.size());
  const FwOutMap::Pin& pin = module.pins[0];
  EXPECT_EQ(1, pin.pin_flag);
  EXPECT_EQ(0xFFu, pin.stream_type);
  EXPECT_EQ(0x15u, pin.sample_rates);
  EXPECT_EQ(3, pin.sample_sizes);
  EXPECT_EQ(0x80000000u, pin.sample_containers);
  EXPECT_EQ(0x37u, pin.channel_cfg);
  EXPECT_EQ(0, module.pins[1].pin_flag);
  EXPECT_EQ(0xCu, module.pins[1].channel_cfg);
  const std::pair<const char*, const char*> cases[] = {
      {"stream_type 100\n", "3: [100] Not recognized stream type"},
      {"stream_type -1\n", "3: [-1] Not recognized stream type"},
      {"sample_rates\n", "invalid stoi argument"},
      {"sample_sizes 1 x\n", "invalid stoi argument"},
      {"sample_containers 80000000\n", "stoi argument out of range"}};
  for (const auto& [lines, error] : cases) {
    EXPECT_EQ(error, failure("pin 0\n" + std::string(lines))) << lines;
  }
}

}  // namespace
}  // namespace tova_fw_builder
