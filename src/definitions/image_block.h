// definitions/image_block.h
// Stage two of the definition files: the statements.
#pragma once

#include <istream>
#include <memory>

#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Reads the flattened definitions into `map` and releases the stream. A stream
// that has failed already yields no statement.
//
//   binary_name WORD      binary_ver 1.5 | 1.8 | 2.5 | 3.0
//   load_offset HEX       hw_buf_ba HEX    hw_buf_size HEX    max_data HEX
//   dyn_mem SECTION       ignore SECTION   memory_class NAME BASE SIZE
//   module [o | b | ba | d | da | l] NAME, and the block of module_block.h
//
// Words behind the operands are ignored. A missing operand takes the word
// before it: `dyn_mem` alone adds a section called dyn_mem.
//
// Logs the modules, groups and sections at level 3. Throws CfgFileError
// "[WORD] Unknown parameter" and "[binary_ver] Unknown binary version", the
// logic errors of parse_signed and parse_unsigned (the latter for hw_buf_ba and
// memory_class), and what the module block throws.
void read_image_layout(FwOutMap& map, std::unique_ptr<std::iostream> stream);

}  // namespace tova_fw_builder
