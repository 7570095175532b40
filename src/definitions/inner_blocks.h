// definitions/inner_blocks.h
// The blocks inside of an image's definition, each in a source of its own.
#pragma once

#include "definitions/block_reader.h"
#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Reads the block behind a `module` statement (docs/definition-language.md,
// "Statements of a module") into `module`, its exports into `map.exports`.
//
// Throws CfgFileError "[module] Undefined const NAME", "[domain_types]
// Undefined const WORD", "[WORD] Modules instance count must be greater than
// zero"; std::runtime_error "Invalid group type"; and what parse_uuid,
// parse_signed and the inner blocks throw.
void read_module(FwOutMap& map, StatementLines& lines,
                 FwOutMap::Module& module);

// Reads the block behind a `group` statement (docs/definition-language.md,
// "Groups of sections") into `group`; logs its sections at level 3. Throws
// std::runtime_error "Double entry point defined", and what parse_unsigned
// throws.
void read_section_group(StatementLines& lines, FwOutMap::SectionGroup& group);

// Reads the block behind a `pin` statement (docs/definition-language.md,
// "Pins") into `pin`. Throws CfgFileError "[WORD] Not recognized stream type",
// and what parse_signed throws.
void read_pin(StatementLines& lines, FwOutMap::Pin& pin);

// The keys that they know.
std::vector<std::string_view> module_keys();
std::vector<std::string_view> group_keys();
std::vector<std::string_view> pin_keys();

}  // namespace tova_fw_builder
