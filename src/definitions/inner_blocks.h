// definitions/inner_blocks.h
// The blocks inside of an image's definition, each in a source of its own, with
// the statement that opens it.
#pragma once

#include <memory>

#include "definitions/block_reader.h"
#include "layout/records/out_map.h"

namespace tova_fw_builder {

// The module of a `module` statement, its kind and name taken and logged at
// level 3.
std::unique_ptr<FwOutMap::Module> open_module(Statement& statement);

// Reads the block behind it (docs/definition-language.md, "Statements of a
// module") into `module`, its exports into `map.exports`.
//
// Throws CfgFileError "[module] Undefined const NAME", "[domain_types]
// Undefined const WORD", "[WORD] Modules instance count must be greater than
// zero"; and what parse_uuid, parse_signed and the inner blocks throw.
void read_module(FwOutMap& map, StatementLines& lines,
                 FwOutMap::Module& module);

// The group of a `group` statement, its type taken and logged at level 3.
// Throws std::runtime_error "Invalid group type".
std::unique_ptr<FwOutMap::SectionGroup> open_group(Statement& statement);

// Reads the block behind it (docs/definition-language.md, "Groups of sections")
// into `group`; logs its sections at level 3. Throws std::runtime_error "Double
// entry point defined", and what parse_unsigned throws.
void read_section_group(StatementLines& lines, FwOutMap::SectionGroup& group);

// The pin of a `pin` statement. Throws what parse_signed throws.
FwOutMap::Pin open_pin(Statement& statement);

// Reads the block behind it (docs/definition-language.md, "Pins") into `pin`.
// Throws CfgFileError "[WORD] Not recognized stream type", and what
// parse_signed throws.
void read_pin(StatementLines& lines, FwOutMap::Pin& pin);

// The keys that they know.
std::vector<std::string_view> module_keys();
std::vector<std::string_view> group_keys();
std::vector<std::string_view> pin_keys();

// The words of `module`, `group` and `domain_types`.
std::vector<std::string_view> module_kinds();
std::vector<std::string_view> group_types();
std::vector<std::string_view> domain_types();

}  // namespace tova_fw_builder
