// inspect/compare/echoes.h
// Which change follows from which.
#pragma once

#include <vector>

#include "inspect/compare/change.h"

namespace tova_fw_builder {

// Gives each change its `echo`, the reason why it follows from another one of
// the same file or folder, or from that two folders were compared; a change
// without a cause among them has none, so that some change is left that is no
// echo, unless paths in the folders are all that differs. `files` are the names
// of all files of a folder, none for a single pair.
void mark_echoes(std::vector<Change>& changes,
                 const std::vector<std::string>& files);

// Takes out the dates of the build, the paths that differ by the folder alone,
// and what would be an echo of these alone.
void leave_out_dates(std::vector<Change>& changes,
                     const std::vector<std::string>& files);

}  // namespace tova_fw_builder
