// inspect/compare/ignored_dates.h
// What isn't told of two builds if their dates are to be ignored.
#pragma once

#include <string>
#include <vector>

#include "inspect/compare/change.h"

namespace tova_fw_builder {

// Takes out the dates of the build, the paths that differ by the folder alone,
// and what would be an echo of these alone.
void leave_out_dates(std::vector<Change>& changes,
                     const std::vector<std::string>& files);

}  // namespace tova_fw_builder
