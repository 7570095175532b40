// definitions/modules_config.h
// The C header that names numbers for the image definition.
#pragma once

#include <string>

#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Reads the lines "#define NAME VALUE" of a C header into `map.consts` and
// passes over all others; it is a scanner, no preprocessor. Words behind VALUE
// are ignored. The last definition of a name wins.
//
// VALUE is decimal, octal or, with "0x", hexadecimal, up to the first character
// that doesn't fit; no number (a value in parentheses, say) gives 0, one beyond
// 32 bits FFFFFFFF. A missing NAME or VALUE is an empty text.
//
// A line of more than 1023 characters is taken up to there and ends the
// reading without a message.
//
// Logs the table at level 3. Throws std::runtime_error "Failed to open file: "
// and the path.
void read_modules_config(FwOutMap& map, const std::string& path);

}  // namespace tova_fw_builder
