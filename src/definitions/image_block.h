// definitions/image_block.h
// Stage two of the definition files: the statements.
#pragma once

#include <istream>
#include <memory>

#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Reads the flattened definitions (docs/definition-language.md, "Statements of
// the image") into `map` and releases the stream. A failed one yields no
// statement.
//
// Throws CfgFileError "[WORD] Unknown parameter" and "[binary_ver] Unknown
// binary version", and what parse_signed, parse_unsigned and read_module throw.
// Logs modules, groups and sections at level 3.
void read_image_layout(FwOutMap& map, std::unique_ptr<std::iostream> stream);

}  // namespace tova_fw_builder
