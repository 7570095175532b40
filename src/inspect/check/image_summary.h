// inspect/check/image_summary.h
// What image it is, for one line of a log.
#pragma once

#include <string>

#include "inspect/check/image_files.h"

namespace tova_fw_builder {

// "firmware 1.4.0.27  generation 3.0  73728 bytes" and what else counts; empty
// without a header.
std::string image_summary(const ImageFiles& image);

}  // namespace tova_fw_builder
