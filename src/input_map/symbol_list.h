// input_map/symbol_list.h
// The symbol list of one ELF, as nm prints it.
#pragma once

#include <functional>
#include <istream>
#include <string>

#include "input_map/fw_image_map.h"

namespace tova_fw_builder {

using TakeSymbol = std::function<void(const FwImageMap::SymbolMap::Entry&)>;

// Hands each symbol of a list on (docs/file-formats.md, "Symbol list"), with a
// name that is valid during the call.
void for_each_symbol(std::istream& in, const TakeSymbol& take);

// The symbols of a list, of each name the last one.
FwImageMap::SymbolMap read_symbols(std::istream& in);
// The same for a file; logs their number at level 2. Throws std::runtime_error
// "Failed to open file: " and the path.
FwImageMap::SymbolMap read_symbols(const std::string& path);

}  // namespace tova_fw_builder
