// memory_map/measure_memory.h
#pragma once

#include "input_map/elf_list.h"
#include "layout/records/out_map.h"
#include "memory_map/memory_map.h"

namespace tova_fw_builder {

// Measures a bound map. The section tables and symbol lists of the ELFs are
// read once more, for what the binding leaves out.
//
// Throws std::runtime_error as the readers do and as require_no_pipe does for
// one of them, and "the memory classes overlap too much: ..." where the lists
// of their sections would take all memory.
MemoryMap measure_memory(const FwOutMap& bound, const ElfList& elfs);

}  // namespace tova_fw_builder
