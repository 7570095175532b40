// definitions/definition_lookup.h
// Where a definition file is looked for, and the working directory, which
// follows the file that is being read, so that a bare name in an `include`
// means a file beside the including one.
#pragma once

#include <fstream>
#include <memory>
#include <string>

#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Opens the file of that name, or else the one of that name in
// `map.default_dir`.
//
// Of the file found, the canonical path is appended to `map.files_read`, the
// working directory as it was is pushed on `map.dir_stack`, and the file's
// directory is made the working directory; the caller undoes the last two when
// an included file has been read. A change of directory that fails is not
// reported.
//
// Throws std::runtime_error "Failed to open image defs file : " and the name;
// std::runtime_error "Cannot get current working directory";
// std::filesystem::filesystem_error of the operation "canonical" for a name
// that can't be resolved. That is the end of each relative name with a
// directory part which is found from the working directory: it is resolved
// from the NEW directory, and definition trees have come to name such files
// from the default directory.
std::shared_ptr<std::ifstream> open_image_defs(FwOutMap& map,
                                               const std::string& name);

// One attempt of it. Yields a stream that isn't open, with the map and the
// working directory untouched, if there is no such file; a directory is none.
// A device is found but reads as an empty file, since some never end.
std::shared_ptr<std::ifstream> find_image_def(FwOutMap& map,
                                              const std::string& name);

}  // namespace tova_fw_builder
