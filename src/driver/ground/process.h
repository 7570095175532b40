// driver/ground/process.h
// What differs between systems when a program starts.
#pragma once

#include <string>
#include <vector>

namespace tova_fw_builder {

// To be called first in main. Yields the arguments without the program's name,
// which a caller may leave out. Behind it a reader that went away is a write
// error and no signal, and a standard stream that the caller closed fails: no
// file that is opened later can take its place.
//
// On Windows the standard streams carry bytes as they stand, and the arguments
// are UTF-8, with no wildcard replaced.
std::vector<std::string> start_process(int argc, char** argv);

}  // namespace tova_fw_builder
