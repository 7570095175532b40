// lint/listed_files.h
#pragma once

#include <string>
#include <vector>

#include "layout/build_core.h"

namespace tova_fw_builder {

// What the ELF list and the key list name, as far as these are files, which can
// be read again, and as far as they can be read.
std::vector<std::string> listed_files(const BuildInputs& inputs);

}  // namespace tova_fw_builder
