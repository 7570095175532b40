// definitions/image_block.h
// Stage two of the definition files: the statements.
#pragma once

#include <istream>
#include <memory>
#include <string_view>
#include <vector>

#include "definitions/block_reader.h"
#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Reads the flattened definitions (docs/definition-language.md, "Statements of
// the image") into `map` and releases the stream. A failed one yields no
// statement.
//
// Throws CfgFileError "[WORD] Unknown parameter" and "[binary_ver] Unknown
// binary version", and what parse_signed, parse_unsigned and read_module throw.
// Logs modules, groups and sections at level 3. Adds to `steps`, unless it is
// null, each line that a block was offered; the last one is where it threw.
void read_image_layout(FwOutMap& map, std::unique_ptr<std::iostream> stream,
                       std::vector<BlockStep>* steps = nullptr);

// The keys that a block knows.
std::vector<std::string_view> statement_keys(BlockKind block);

}  // namespace tova_fw_builder
