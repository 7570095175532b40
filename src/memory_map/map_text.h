// memory_map/map_text.h
#pragma once

#include <ostream>
#include <vector>

#include "companion/ground/colour.h"
#include "memory_map/baseline.h"
#include "memory_map/budget.h"
#include "memory_map/memory_map.h"

namespace tova_fw_builder {

// Tables for people: what is full, whose it is, what page boundaries cost, and
// what is odd. Long lists end early unless `is_long`. `changes` may be null,
// else they come first.
void print_map(std::ostream& out, const MemoryMap& map,
               const std::vector<BudgetResult>& budgets,
               const MapChanges* changes, bool is_long, const Colours& colours);

}  // namespace tova_fw_builder
