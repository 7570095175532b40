// inspect/flash_script.h
#pragma once

#include <istream>
#include <string>

#include "inspect/byte_source.h"
#include "inspect/inspected.h"

namespace tova_fw_builder {

// Lists a flash image by the statements of the script that made it, in their
// order: the parts that each wrote, the zeros between them, and the partition
// table. File names stand behind `prefix`, as behind the parameter deploy_dir
// of build_img. Where a file is
// missing, the places behind it are unknown up to the next `offset`.
//
// Problems: parts that write over others, bytes of files, hashes, numbers and
// zeros that the image has otherwise, files that are missing, and what lies
// behind the end of the image. Throws std::runtime_error if the script writes
// nothing.
Inspected inspect_flash_image(const ByteSource& image, std::istream& script,
                              const std::string& prefix);

}  // namespace tova_fw_builder
