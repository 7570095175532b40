// definitions/pin_block.h
#pragma once

#include "definitions/statement_block.h"
#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Reads the block behind a `pin` statement into `pin`: stream_type, and the
// lists of bits sample_rates, sample_sizes, sample_containers, channel_cfg.
// All numbers are hexadecimal. Repeated lists add up.
//
// Throws CfgFileError "[WORD] Not recognized stream type" beyond FF, and the
// logic errors of parse_signed.
void read_pin(StatementLines& lines, FwOutMap::Pin& pin);

}  // namespace tova_fw_builder
