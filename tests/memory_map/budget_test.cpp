#include "memory_map/budget.h"

#include <gtest/gtest.h>

#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

TEST(Budget, Forms) {
  const struct {
    const char* text;
    const char* memory_class;
    std::uint64_t amount;
    bool is_percent;
  } kCases[] = {
      {"sram=0", "sram", 0, false},
      {"sram=96", "sram", 96, false},
      {"sram=96K", "sram", 98304, false},
      {"sram=2M", "sram", 2097152, false},
      {"sram=100%", "sram", 100, true},
      {"a=b=1", "a=b", 1, false},
      {"sram=1099511627776", "sram", 1099511627776, false},
      {"sram=1073741824K", "sram", 1099511627776, false},
      {"sram=1048576M", "sram", 1099511627776, false},
  };
  for (const auto& item : kCases) {
    const Budget budget = parse_budget(item.text);
    EXPECT_EQ(item.memory_class, budget.memory_class) << item.text;
    EXPECT_EQ(item.amount, budget.amount) << item.text;
    EXPECT_EQ(item.is_percent, budget.is_percent) << item.text;
  }
  for (const std::string text :
       {"", "sram", "=1", "sram=", "sram=K", "sram=-1", "sram= 1", "sram=1k",
        "sram=1KB", "sram=101%", "sram=1.5M", "sram=0x10", "sram=1099511627777",
        "sram=1073741825K", "sram=1048577M", "sram=99999999999999999999"}) {
    EXPECT_EQ("--budget wants CLASS=LIMIT, as in sram=96K or sram=90%: " + text,
              message_of([&] { parse_budget(text); }));
  }
}

TEST(Budget, ForEachClassOfItsName) {
  MemoryMap map;
  map.classes = {{"sram", 0, 1001, 500, 0, {}},
                 {"rom", 0, 10, 10, 0, {}},
                 {"sram", 0, 1000, 501, 0, {}}};
  const auto results =
      check_budgets(map, {parse_budget("sram=50%"), parse_budget("rom=9"),
                          parse_budget("rom=10")});
  ASSERT_EQ(4u, results.size());
  EXPECT_EQ(500u, results[0].bytes);  // 500.5, cut
  EXPECT_EQ(0u, results[0].over());
  EXPECT_EQ(1u, results[1].over());
  EXPECT_EQ("sram: 501 bytes used, 1 over the budget of 50% (500 bytes)",
            over_budget_line(results[1]));
  EXPECT_EQ("rom: 10 bytes used, 1 over the budget of 9",
            over_budget_line(results[2]));
  EXPECT_EQ(0u, results[3].over());
}

TEST(Budget, NamesTheClassesThereAre) {
  MemoryMap map;
  const auto check = [&map] { check_budgets(map, {parse_budget("x=1")}); };
  EXPECT_EQ("there is no memory class x (the definition has none)",
            message_of(check));
  map.classes = {{"a", 0, 1, 0, 0, {}}, {"b", 0, 1, 0, 0, {}}};
  EXPECT_EQ("there is no memory class x (there are a, b)", message_of(check));
}

}  // namespace
}  // namespace tova_fw_builder
