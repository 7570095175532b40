// memory_map/map_json.h
#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

#include "companion/ground/json_writer.h"
#include "memory_map/baseline.h"
#include "memory_map/budget.h"
#include "memory_map/memory_map.h"

namespace tova_fw_builder {

// What a map tells. `changes` may be null; they come with the path of the
// baseline.
struct MapAnswer {
  const MemoryMap& map;
  const std::vector<BudgetResult>& budgets;
  const MapChanges* changes;
  const std::string& baseline;
};

// Prints the document that docs/schema/map.json tells, row by row: a section
// stands in each class that it lies in.
void print_map_json(std::ostream& out, const MapAnswer& answer);

// The same with the lists that can grow with the whole of the firmware's
// symbols cut behind so many bytes of rows, as json_for_page has them. Behind
// its members stands "rows", which tells how many each list would have.
void write_cut_map(JsonWriter& json, const MapAnswer& answer,
                   std::size_t list_bytes);

}  // namespace tova_fw_builder
