// definitions/module_block.h
#pragma once

#include "definitions/statement_block.h"
#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Reads the block behind a `module` statement into `module`, with the pin and
// group blocks in it. Names of `map.consts` can stand for numbers in
// affinity_mask and instance_count. `export` enters a symbol in `map.exports`,
// for the whole image.
//
// Throws CfgFileError
//   "[module] Undefined const NAME",
//   "[domain_types] Undefined const WORD",
//   "[WORD] Modules instance count must be greater than zero";
// std::runtime_error "Invalid group type"; and what parse_uuid, parse_signed
// and the inner blocks throw.
void read_module(FwOutMap& map, StatementLines& lines,
                 FwOutMap::Module& module);

}  // namespace tova_fw_builder
