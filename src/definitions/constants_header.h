// definitions/constants_header.h
#pragma once

#include <istream>
#include <string>

#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Reads the "#define" lines of a C header into `map.consts`, by
// any_base_or_zero (docs/definition-language.md, "The header of constants"). A
// missing name or value is an empty text. Logs the table at level 3.
//
// Throws std::runtime_error "Failed to open file: " and the path.
void read_modules_config(FwOutMap& map, const std::string& path);
void read_modules_config(FwOutMap& map, std::istream& in);

}  // namespace tova_fw_builder
