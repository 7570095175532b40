// memory_map/map_json.h
#pragma once

#include <vector>

#include "companion/ground/json.h"
#include "memory_map/baseline.h"
#include "memory_map/budget.h"
#include "memory_map/memory_map.h"

namespace tova_fw_builder {

// The document that docs/schema/map.json tells. `changes` may be null; it
// comes with the path of the baseline.
Json map_json(const MemoryMap& map, const std::vector<BudgetResult>& budgets,
              const MapChanges* changes, const std::string& baseline);

}  // namespace tova_fw_builder
