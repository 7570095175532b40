// memory_map/measures.h
// The parts of measure_memory, in their order. Each fills what its name tells
// out of what those before it have filled.
#pragma once

#include "input_map/elf_list.h"
#include "layout/records/out_map.h"
#include "memory_map/memory_map.h"

namespace tova_fw_builder {

// The hardware buffer, and the three behind this one: what needs no more than
// that the sections have their headers.
void measure_addresses(const FwOutMap& map, MemoryMap& memory);

void measure_sections(const FwOutMap& bound, MemoryMap& map);

// `classes` and `outside_classes`.
void measure_classes(const FwOutMap& bound, MemoryMap& map);

void find_overlaps(MemoryMap& map);

// `modules`, `groups` and the pages of the image.
void measure_modules(const FwOutMap& bound, MemoryMap& map);

// Throws what the readers throw.
void read_left_out_and_symbols(const FwOutMap& bound, const ElfList& elfs,
                               MemoryMap& map);

}  // namespace tova_fw_builder
