// definitions/pin_block.h
#pragma once

#include "definitions/block_reader.h"
#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Reads the block behind a `pin` statement (docs/definition-language.md,
// "Pins") into `pin`. Throws CfgFileError "[WORD] Not recognized stream type",
// and what parse_signed throws.
void read_pin(StatementLines& lines, FwOutMap::Pin& pin);

std::vector<std::string_view> pin_keys();

}  // namespace tova_fw_builder
