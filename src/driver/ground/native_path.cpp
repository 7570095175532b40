// Paths for the file system. The library's own conversions go by the code page
// of the user on Windows, which has no room for most of the names there are.
#include "driver/ground/native_path.h"

#ifdef _WIN32
#include "driver/ground/wide_text.h"
#endif

namespace tova_fw_builder {

#ifdef _WIN32

std::filesystem::path native_path(const std::string& path) {
  return wide_text(path);
}

std::string path_text(const std::filesystem::path& path) {
  return utf8_text(path.native());
}

std::FILE* open_c_stream(const std::string& path) {
  return _wfopen(native_path(path).c_str(), L"rb");
}

#else

std::filesystem::path native_path(const std::string& path) { return path; }

std::string path_text(const std::filesystem::path& path) {
  return path.native();
}

std::FILE* open_c_stream(const std::string& path) {
  return std::fopen(path.c_str(), "rb");
}

#endif

}  // namespace tova_fw_builder
