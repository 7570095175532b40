// inspect/addon_name.h
#pragma once

#include <string>
#include <string_view>

namespace tova_fw_builder {

// The UUID in the name of an addon file (layout/records/addon_file.h), in lower
// case, whatever case the name has; empty if the file is named otherwise.
// Whether it has the form of a UUID isn't asked.
std::string uuid_of_addon_file(std::string_view path);

}  // namespace tova_fw_builder
