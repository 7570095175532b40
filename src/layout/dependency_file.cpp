// The make dependency file. The empty rule for each file keeps make from
// failing once a definition file is gone.
#include <algorithm>
#include <fstream>

#include "driver/ground/files.h"
#include "driver/ground/paths.h"
#include "layout/passes.h"

namespace tova_fw_builder {

void write_dependency_file(const std::string& elf_list_path,
                           const std::vector<std::string>& files_read) {
  std::ofstream out =
      open_output(path_text(native_path(elf_list_path).replace_extension("d")));
  for (std::string file : files_read) {
    // To make, a backslash quotes what follows.
    std::replace(file.begin(), file.end(), '\\', '/');
    out << "binary_parts: " << file << '\n' << file << ": \n\n";
  }
}

}  // namespace tova_fw_builder
