// layout/records/addon_file.h
// The names of addon files: NAME_UUID.bin. NAME is that of the firmware binary
// as far as its last dot, as a rule.
#pragma once

#include <string>

namespace tova_fw_builder {

// What stands behind the binary's path in that of the addon with this UUID.
inline std::string addon_file_suffix(const std::string& uuid) {
  return "_" + uuid + ".bin";
}

}  // namespace tova_fw_builder
