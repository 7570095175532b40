// inspect/compare/echoes.h
// Which change follows from which.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "inspect/compare/change.h"

namespace tova_fw_builder {

// The reason of those that differ because two folders were compared.
inline constexpr std::string_view kFolderEcho = "the folder";

// Gives each change its `echo`, the reason why it follows from another one of
// the same file or folder, or from that two folders were compared; a change
// without a cause among them has none, so that some change is left that is no
// echo, unless paths in the folders are all that differs. `files` are the names
// of all files of a folder, none for a single pair.
void mark_echoes(std::vector<Change>& changes,
                 const std::vector<std::string>& files);

}  // namespace tova_fw_builder
