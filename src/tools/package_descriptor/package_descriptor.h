// tools/package_descriptor/package_descriptor.h
// The text file beside the binary that `asm` reads its files from.
#pragma once

#include <cstdint>
#include <string>

#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Writes `path` + ".pkg" (docs/file-formats.md, "Package descriptor"), where
// `path` is the binary's path without extension. A failure to write is not
// reported.
//
// `date` and `module_type` are those of the image's manifest: BCD as
// 0xYYYYMMDD, or 0, and the number of the manifest's kind.
void write_package_descriptor(const FwOutMap& map, const std::string& path,
                              std::uint32_t date, std::uint32_t module_type);

}  // namespace tova_fw_builder
