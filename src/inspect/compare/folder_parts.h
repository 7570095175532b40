// inspect/compare/folder_parts.h
#pragma once

#include <string_view>

namespace tova_fw_builder {

// Whether two different texts are the same but for folders: each word of one is
// that of the other, or a path to a file of the same name.
bool differ_in_folders(std::string_view old_text, std::string_view new_text);

}  // namespace tova_fw_builder
