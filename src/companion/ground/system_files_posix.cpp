#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "companion/ground/system_files.h"

namespace tova_fw_builder {

std::string create_beside(const std::string& path) {
  std::string name = path + ".XXXXXX";
  const int file = mkstemp(name.data());
  if (file < 0) return {};
  close(file);
  return name;
}

bool give_usual_rights(const std::string& file, const std::string& path) {
  struct stat existing = {};
  if (stat(path.c_str(), &existing) == 0) {
    return chmod(file.c_str(), existing.st_mode & 07777) == 0;
  }
  const mode_t mask = umask(0);
  umask(mask);
  return chmod(file.c_str(), 0666 & ~mask) == 0;
}

bool standard_output_is_terminal() { return isatty(STDOUT_FILENO) == 1; }

}  // namespace tova_fw_builder
