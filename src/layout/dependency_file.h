// layout/dependency_file.h
// The make dependency file of a build.
#pragma once

#include <string>
#include <vector>

namespace tova_fw_builder {

// Writes `elf_list_path` with its extension replaced by "d" ("fw.lst" and "fw"
// give "fw.d", ".lst" gives ".lst.d"): for each file of `files_read` the rules
// "binary_parts: FILE" and "FILE: ", and an empty line. Backslashes become
// slashes, as make wants them. Failures are passed over in silence.
void write_dependency_file(const std::string& elf_list_path,
                           const std::vector<std::string>& files_read);

}  // namespace tova_fw_builder
