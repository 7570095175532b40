// driver/ground/native_path.h
// Paths for the file system. Everywhere else a path is a std::string, in UTF-8
// on Windows and in the system's own bytes elsewhere, with backslash and slash
// as separators.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

namespace tova_fw_builder {

// What is no UTF-8 names no file on Windows: it becomes U+FFFD.
std::filesystem::path native_path(const std::string& path);

std::string path_text(const std::filesystem::path& path);

#ifdef _WIN32
// The text that functions of Windows take and give. What can't be converted
// becomes U+FFFD.
std::wstring wide_text(std::string_view utf8);
std::string utf8_text(std::wstring_view wide);
#endif

// The working directory. Throws std::runtime_error "Cannot get current working
// directory", also for one of more than 259 characters.
std::string current_directory();

// The path cut behind its last separator, which is kept; empty without one.
std::string directory_of(const std::string& path);

// Directory, separator, name; the separator also behind another one.
std::string join_path(const std::string& directory, const std::string& name);

// Opens a file to read its bytes. Null, with the reason in errno, if it can't.
std::FILE* open_c_stream(const std::string& path);

}  // namespace tova_fw_builder
