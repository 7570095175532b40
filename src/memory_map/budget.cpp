#include "memory_map/budget.h"

#include <charconv>
#include <stdexcept>
#include <string_view>

namespace tova_fw_builder {
namespace {

struct Unit {
  std::string_view sign;
  std::uint64_t factor;
  std::uint64_t most;
  bool is_percent;
};
constexpr Unit kUnits[] = {
    {"", 1, std::uint64_t{1} << 40, false},
    {"K", 1 << 10, 1 << 30, false},
    {"M", 1 << 20, 1 << 20, false},
    {"%", 1, 100, true},
};

}  // namespace

Budget parse_budget(const std::string& text) {
  const auto equals = text.rfind('=');
  if (equals != text.npos && equals != 0) {
    Budget budget = {text.substr(0, equals), text.substr(equals + 1)};
    const char* const end = budget.limit.data() + budget.limit.size();
    const auto [rest, error] =
        std::from_chars(budget.limit.data(), end, budget.amount);
    for (const Unit& unit : kUnits) {
      if (error != std::errc() || std::string_view(rest) != unit.sign) continue;
      if (budget.amount > unit.most) continue;
      budget.amount *= unit.factor;
      budget.is_percent = unit.is_percent;
      return budget;
    }
  }
  throw std::runtime_error(
      "--budget wants CLASS=LIMIT, as in sram=96K or sram=90%: " + text);
}

std::vector<BudgetResult> check_budgets(const MemoryMap& map,
                                        const std::vector<Budget>& budgets) {
  std::vector<BudgetResult> results;
  for (const Budget& budget : budgets) {
    bool found = false;
    for (const MemoryMap::Class& area : map.classes) {
      if (area.name != budget.memory_class) continue;
      found = true;
      results.push_back(
          {area.name, budget.limit,
           budget.is_percent ? area.size * budget.amount / 100 : budget.amount,
           area.used});
    }
    if (found) continue;
    std::string text = "there is no memory class " + budget.memory_class;
    if (map.classes.empty()) text += " (the definition has none)";
    for (std::size_t i = 0; i < map.classes.size(); ++i) {
      text += (i == 0 ? " (there are " : ", ") + map.classes[i].name;
    }
    if (!map.classes.empty()) text += ')';
    throw std::runtime_error(text);
  }
  return results;
}

std::string over_budget_line(const BudgetResult& result) {
  const std::string bytes = std::to_string(result.bytes);
  std::string line = result.memory_class + ": " + std::to_string(result.used) +
                     " bytes used, " + std::to_string(result.over()) +
                     " over the budget of " + result.limit;
  if (bytes != result.limit) line += " (" + bytes + " bytes)";
  return line;
}

}  // namespace tova_fw_builder
