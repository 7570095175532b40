// layout/records/addon_file.h
// Addon modules in files of their own, and the names of these: NAME_UUID.bin.
// NAME is that of the firmware binary as far as its last dot, as a rule.
#pragma once

#include <cstdint>
#include <string>

#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Whether addon modules stand in the binary, as from 1.8 on; in 1.5 each has a
// file of its own. False for unknown generations, too.
constexpr bool keeps_addons_in_binary(std::uint32_t binary_ver) {
  return binary_ver == kKelp18 || binary_ver == kKelp25 ||
         binary_ver == kKelp30;
}

// Whether the module goes to a file of its own. False in all generations
// but 1.5; a kind unknown to the definitions counts like an addon.
inline bool has_own_file(const FwOutMap& map, const FwOutMap::Module& module) {
  return map.binary_ver == kKelp15 &&
         module.module_kind != FwOutMap::Module::kBase &&
         module.module_kind != FwOutMap::Module::kLibrary;
}

// What stands behind the binary's path in that of the addon with this UUID.
inline std::string addon_file_suffix(const std::string& uuid) {
  return "_" + uuid + ".bin";
}

}  // namespace tova_fw_builder
