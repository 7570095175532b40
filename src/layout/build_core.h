// layout/build_core.h
// From the input files to the finished and checked output map.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "layout/out_map.h"

namespace tova_fw_builder {

// Reads the definitions and the linker's output, binds and checks the map and
// writes a make dependency file beside the ELF list (its extension replaced by
// "d"), which names the definition files that were read. The caller owns the
// map; the section streams live on in it.
//
// `rom_mode`: sections of any kind may stand in any group. An empty
// `key_list_path` means no key store, an absent `module_config_path` no
// constants; an empty one is a name like any other.
//
// Throws CfgFileError and the logic errors of parse_signed and parse_unsigned
// for the definitions, else std::runtime_error. Leaves the working directory
// at the image definition's. A dependency file that can't be written is passed
// over in silence.
std::unique_ptr<FwOutMap> build_out_map(
    bool rom_mode, const std::string& elf_list_path,
    const std::string& key_list_path, const std::string& default_dir,
    const std::string& image_def_path,
    const std::optional<std::string>& module_config_path);

}  // namespace tova_fw_builder
