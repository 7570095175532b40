// tools/partition_table.h
#pragma once

#include <array>

#include "driver/ground/wire.h"

namespace tova_fw_builder {

// As it stands in a flash image, 68 bytes.
struct PartitionTable {
  Le32 count;                      // positions recorded
  std::array<Le32, 16> positions;  // of the marked files, in order; then zero
};
static_assert(sizeof(PartitionTable) == 68 && alignof(PartitionTable) == 1);

}  // namespace tova_fw_builder
