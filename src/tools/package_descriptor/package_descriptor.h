// tools/package_descriptor/package_descriptor.h
// The package descriptor: a text file beside the binary that describes the
// image to people and lists the package's files for the `asm` command.
#pragma once

#include <cstdint>
#include <string>

#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Writes the file `path` + ".pkg", where `path` is the binary's path without
// extension. A file that can't be opened or written is no failure.
//
// One "bin" line for the binary, with the display name of the first module
// (empty without modules), and one for each module of kind 1: in every
// generation, though only 1.5 writes such modules to files of their own, so in
// the others the line names a file that no build made.
//
// `date` and `module_type` are those of the image's manifest: BCD as
// 0xYYYYMMDD, or 0, and the number of the manifest's kind.
void write_package_descriptor(const FwOutMap& map, const std::string& path,
                              std::uint32_t date, std::uint32_t module_type);

}  // namespace tova_fw_builder
