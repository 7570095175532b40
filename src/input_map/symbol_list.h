// input_map/symbol_list.h
// The symbol list of one ELF, as nm prints it.
#pragma once

#include <string>

#include "input_map/fw_image_map.h"

namespace tova_fw_builder {

// Reads lines of a hexadecimal address, a type letter and a name, each behind
// optional white space; text behind them is ignored. A line without all three,
// or with an address of more than 32 bits, is skipped; so are the lines of
// undefined symbols, which have no address. Of a name that stands twice the
// last line counts. A line of more than 1023 characters is cut there and ends
// the reading.
//
// Logs at level 2 "Loaded ", the number of names, " symbols from file: " and
// the path. Throws std::runtime_error "Failed to open file: " and the path.
FwImageMap::SymbolMap read_symbols(const std::string& path);

}  // namespace tova_fw_builder
