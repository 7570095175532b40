// tests/support/temp_dir.h
#pragma once

#include <filesystem>
#include <string>

// A new empty folder, removed with all in it when the object ends. `path` has
// no trailing separator. The working directory is put back too, as reading a
// definition changes it.
class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  std::string path() const { return path_.string(); }
  std::string file(const std::string& name) const {
    return (path_ / name).string();
  }
  // Writes a file and yields its path.
  std::string write(const std::string& name, const std::string& bytes) const;

 private:
  std::filesystem::path path_;
  std::filesystem::path old_directory_;
};

// The whole file; empty if it can't be read.
std::string read_file(const std::string& path);

// The message of the exception that `action` throws; "no exception" if none.
template <typename Action>
std::string message_of(const Action& action) {
  try {
    action();
  } catch (const std::exception& error) {
    return error.what();
  }
  return "no exception";
}
