// definitions/group_block.h
#pragma once

#include "definitions/statement_block.h"
#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Reads the block behind a `group` statement into `group`:
//
//   entry ADDRESS                         hexadecimal, unsigned
//   section [ep | o] NAME [< REPLACEMENT]
//
// Logs each section at level 3. Throws std::runtime_error "Double entry point
// defined", and the logic errors of parse_unsigned.
void read_section_group(StatementLines& lines, FwOutMap::SectionGroup& group);

}  // namespace tova_fw_builder
