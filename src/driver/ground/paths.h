// driver/ground/paths.h
// Paths for the file system. Everywhere else a path is a std::string, in UTF-8
// on Windows and in the system's own bytes elsewhere, with backslash and slash
// as separators.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace tova_fw_builder {

// What is no UTF-8 names no file on Windows: it becomes U+FFFD.
std::filesystem::path native_path(const std::string& path);

std::string path_text(const std::filesystem::path& path);

#ifdef _WIN32
// The text of what functions of Windows give. What can't be converted becomes
// U+FFFD.
std::string utf8_text(std::wstring_view wide);
#endif

// The working directory. Throws std::runtime_error "Cannot get current working
// directory", also for one of more than 259 characters.
std::string current_directory();

// The path cut behind its last separator, which is kept; empty without one.
std::string directory_of(const std::string& path);

// Directory, separator, name; the separator also behind another one.
std::string join_path(const std::string& directory, const std::string& name);

}  // namespace tova_fw_builder
