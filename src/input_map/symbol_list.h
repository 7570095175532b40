// input_map/symbol_list.h
// The symbol list of one ELF, as nm prints it.
#pragma once

#include <functional>
#include <istream>
#include <string>

#include "input_map/fw_image_map.h"

namespace tova_fw_builder {

using TakeSymbol = std::function<void(const FwImageMap::SymbolMap::Entry&)>;

// Reads lines of a hexadecimal address, a type letter and a name, each behind
// optional white space; text behind them is ignored. A line without all three,
// or with an address of more than 32 bits, is skipped; so are the lines of
// undefined symbols, which have no address. A line of more than 1023 characters
// is cut there and ends the reading. Each symbol is handed on as it is read,
// with a name that is valid during the call.
void for_each_symbol(std::istream& in, const TakeSymbol& take);

// The symbols of a list. Of a name that stands twice the last line counts.
//
// Logs at level 2 "Loaded ", the number of names, " symbols from file: " and
// the path. Throws std::runtime_error "Failed to open file: " and the path.
FwImageMap::SymbolMap read_symbols(const std::string& path);

}  // namespace tova_fw_builder
