// inspect/check/unknown_files.h
// Files in which nothing is known, and which none of the others tells of.
#pragma once

#include <vector>

#include "inspect/check/image_files.h"

namespace tova_fw_builder {

// In the order of the files, those that begin like one of an image behind the
// others. What lies in a folder and is no contents, such as text, is left out.
std::vector<UnknownFile> unknown_files(const std::vector<CheckedFile>& files,
                                       const ImageFiles& image);

}  // namespace tova_fw_builder
