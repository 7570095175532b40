// Paths for the file system. The library's own conversions go by the code page
// of the user on Windows, which has no room for most of the names there are.
#include "driver/ground/paths.h"

#include <stdexcept>
#include <system_error>

#ifdef _WIN32
#include <windows.h>
#endif

namespace tova_fw_builder {

namespace {

#ifdef _WIN32
std::wstring wide_text(std::string_view utf8) {
  const int length = static_cast<int>(utf8.size());
  std::wstring wide(utf8.size(), L'\0');  // never more units than bytes
  wide.resize(static_cast<std::size_t>(
      MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, wide.data(),
                          static_cast<int>(wide.size()))));
  return wide;
}
#endif

// The tightest limit of all platforms: a tree builds on all of them or on none.
constexpr std::size_t kLongestDirectory = 259;

constexpr char kSeparator =
    static_cast<char>(std::filesystem::path::preferred_separator);

}  // namespace

#ifdef _WIN32

std::string utf8_text(std::wstring_view wide) {
  const int length = static_cast<int>(wide.size());
  std::string utf8(3 * wide.size(), '\0');  // no unit takes more
  utf8.resize(static_cast<std::size_t>(
      WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, utf8.data(),
                          static_cast<int>(utf8.size()), nullptr, nullptr)));
  return utf8;
}

std::filesystem::path native_path(const std::string& path) {
  return wide_text(path);
}

std::string path_text(const std::filesystem::path& path) {
  return utf8_text(path.native());
}

#else

std::filesystem::path native_path(const std::string& path) { return path; }

std::string path_text(const std::filesystem::path& path) {
  return path.native();
}

#endif

std::string current_directory() {
  std::error_code error;
  std::string path = path_text(std::filesystem::current_path(error));
  if (error || path.size() > kLongestDirectory) {
    throw std::runtime_error("Cannot get current working directory");
  }
  return path;
}

std::string directory_of(const std::string& path) {
  // Without a separator npos + 1 is 0.
  return path.substr(0, path.find_last_of("\\/") + 1);
}

std::string join_path(const std::string& directory, const std::string& name) {
  return directory + kSeparator + name;
}

}  // namespace tova_fw_builder
