// companion/ground/status.h
#pragma once

#include <algorithm>

namespace tova_fw_builder {

// What a command of the companion ends with; the value is the exit status.
enum class Status {
  kYes = 0,      // shown, equal, all holds, no finding
  kNo = 1,       // different, a check fails, a finding of level error
  kTrouble = 2,  // a file that can't be read or written, wrong usage
};

constexpr Status worse_of(Status a, Status b) { return std::max(a, b); }

}  // namespace tova_fw_builder
