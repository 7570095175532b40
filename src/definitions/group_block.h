// definitions/group_block.h
#pragma once

#include "definitions/block_reader.h"
#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Reads the block behind a `group` statement (docs/definition-language.md,
// "Groups of sections") into `group`; logs its sections at level 3. Throws
// std::runtime_error "Double entry point defined", and what parse_unsigned
// throws.
void read_section_group(StatementLines& lines, FwOutMap::SectionGroup& group);

std::vector<std::string_view> group_keys();

}  // namespace tova_fw_builder
