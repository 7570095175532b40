// definitions/module_block.h
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

std::vector<std::string_view> module_keys();

}  // namespace tova_fw_builder
