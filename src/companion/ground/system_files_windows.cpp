#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <random>

#include "companion/ground/system_files.h"
#include "driver/ground/paths.h"

namespace tova_fw_builder {

std::string create_beside(const std::string& path) {
  std::random_device random;
  for (int attempt = 0; attempt < 100; ++attempt) {
    const std::string name = path + "." + std::to_string(random());
    const int file = _wopen(native_path(name).c_str(),
                            _O_CREAT | _O_EXCL | _O_WRONLY | _O_BINARY,
                            _S_IREAD | _S_IWRITE);
    if (file >= 0) {
      _close(file);
      return name;
    }
    if (errno != EEXIST) return {};
  }
  return {};
}

// Files take the rights of their folder, and whose home it is decides who may
// read a private one.
bool give_usual_rights(const std::string&, const std::string&) { return true; }

// A thread of the system's ends the program, which can't be held back.
unsigned hold_interrupts() { return 0; }

void release_interrupts(unsigned) {}

bool is_interrupted(unsigned) { return false; }

std::optional<std::size_t> read_at(std::FILE& file, std::uint64_t offset,
                                   std::span<char> to) {
  std::setvbuf(&file, nullptr, _IONBF, 0);
  if (_fseeki64(&file, static_cast<std::int64_t>(offset), SEEK_SET) != 0) {
    return std::nullopt;
  }
  std::clearerr(&file);
  const std::size_t count = std::fread(to.data(), 1, to.size(), &file);
  if (std::ferror(&file) != 0) return std::nullopt;
  return count;
}

bool standard_output_is_terminal() { return _isatty(_fileno(stdout)) != 0; }

bool is_terminal(const std::string& device) {
  const int file = _wopen(native_path(device).c_str(), _O_WRONLY);
  if (file < 0) return false;
  const bool is_one = _isatty(file) != 0;
  _close(file);
  return is_one;
}

// Nothing tells it here, so that it is told as an output that can't be written.
bool standard_output_is_unread() { return false; }

// There is no such limit.
void take_size_limit_as_error() {}

}  // namespace tova_fw_builder
