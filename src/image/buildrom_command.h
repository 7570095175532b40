// image/buildrom_command.h
// The `buildrom` command.
#pragma once

#include <string>

namespace tova_fw_builder {

// Builds a plain ROM image: the contents of all modules with their padding, and
// nothing around them. Names are glued to `out_dir`, ".bin" to the binary's.
// That the image can't be written goes unnoticed. Throws what build_out_map and
// write_module_contents throw.
void buildrom_command(const std::string& default_dir,
                      const std::string& image_def_path,
                      const std::string& out_dir,
                      const std::string& elf_list_name,
                      const std::string& binary_name);

}  // namespace tova_fw_builder
