// layout/records/addon_file.h
// The names of addon files: NAME_UUID.bin. NAME is that of the firmware binary
// as far as its last dot, as a rule.
#pragma once

#include <string>
#include <string_view>

namespace tova_fw_builder {

// What stands behind the binary's path in that of the addon with this UUID.
std::string addon_file_suffix(std::string_view uuid);

// The UUID in such a name, in lower case, whatever case the name has; empty if
// the file is named otherwise. Whether it has the form of a UUID isn't asked.
std::string uuid_of_addon_file(std::string_view path);

}  // namespace tova_fw_builder
