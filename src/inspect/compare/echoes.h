// inspect/compare/echoes.h
// Which change follows from which.
#pragma once

#include <vector>

#include "inspect/compare/change.h"

namespace tova_fw_builder {

// Gives each change its `echo`, the reason why it follows from another one of
// the same file or folder; a change without a cause among them has none, so
// that some change is always left that is no echo. `files` are the names of all
// files of a folder, none for a single pair.
void mark_echoes(std::vector<Change>& changes,
                 const std::vector<std::string>& files);

// Takes out the dates of the build, and what would be an echo of them alone.
void leave_out_dates(std::vector<Change>& changes,
                     const std::vector<std::string>& files);

}  // namespace tova_fw_builder
