// memory_map/budget.h
// How much of a memory class may be used.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "memory_map/memory_map.h"

namespace tova_fw_builder {

struct Budget {
  std::string memory_class;
  std::string limit;         // as it was written
  std::uint64_t amount = 0;  // bytes, or percent of the class
  bool is_percent = false;
};

// Reads CLASS=LIMIT: a decimal number of bytes, of KiB or MiB with K or M
// behind it, or of percent, up to 100, with %. Throws std::runtime_error
// "--budget wants CLASS=LIMIT, as in sram=96K or sram=90%: " and the text.
Budget parse_budget(const std::string& text);

struct BudgetResult {
  std::string memory_class;
  std::string limit;
  std::uint64_t bytes = 0;  // that the budget allows
  std::uint64_t used = 0;

  std::uint64_t over() const { return used > bytes ? used - bytes : 0; }
};

// Each budget for each class of its name. Throws std::runtime_error
// "there is no memory class " and its name, with those that there are.
std::vector<BudgetResult> check_budgets(const MemoryMap& map,
                                        const std::vector<Budget>& budgets);

// "sram: 90112 bytes used, 8192 over the budget of 80K".
std::string over_budget_line(const BudgetResult& result);

}  // namespace tova_fw_builder
