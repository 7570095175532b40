// definitions/definition_lookup.h
// Where a definition file is looked for (docs/definition-language.md,
// "include"), and the working directory, which follows the file that is being
// read.
#pragma once

#include <fstream>
#include <memory>
#include <string>

#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Opens the file of that name, or else the one of that name in
// `map.default_dir`. Appends its canonical path to `map.files_read`, pushes the
// working directory on `map.dir_stack` and makes the file's directory the new
// one; the caller undoes the last two behind an included file.
//
// Throws std::runtime_error "Failed to open image defs file : " and the name,
// or "Cannot get current working directory", or "filesystem error: canonical:
// ", the system's reason and the name in brackets, for a name that the new
// directory doesn't resolve.
std::shared_ptr<std::ifstream> open_image_defs(FwOutMap& map,
                                               const std::string& name);

// One attempt of it. Yields a stream that isn't open, with nothing changed, if
// there is no such file; a directory is none, and a device is an empty file.
std::shared_ptr<std::ifstream> find_image_def(FwOutMap& map,
                                              const std::string& name);

}  // namespace tova_fw_builder
