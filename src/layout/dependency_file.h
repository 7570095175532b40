// layout/dependency_file.h
// The make dependency file of a build.
#pragma once

#include <string>
#include <vector>

namespace tova_fw_builder {

// Writes the rules for `files_read` (docs/file-formats.md) beside the ELF list:
// "fw.lst" and "fw" give "fw.d", ".lst" gives ".lst.d". Failures are passed
// over in silence.
void write_dependency_file(const std::string& elf_list_path,
                           const std::vector<std::string>& files_read);

}  // namespace tova_fw_builder
