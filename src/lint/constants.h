// lint/constants.h
// The header of constants as text; the builder keeps the numbers alone.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "layout/records/out_map.h"

namespace tova_fw_builder {

// What stands behind each name, in the last line that defines it.
using ConstantTexts = std::map<std::string, std::string, std::less<>>;

// Reads the header into `map`, too, as read_modules_config does: once, as it
// may be a pipe.
ConstantTexts read_constants(FwOutMap& map, const std::string& path);

// Why a constant isn't the number that was meant: "the header has '(1 | 2)' for
// it, ...". Empty if the header has a bare number for it, or nothing.
std::string constant_fault(const ConstantTexts& constants,
                           std::string_view name);

}  // namespace tova_fw_builder
