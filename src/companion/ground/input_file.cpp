// By a C stream: of these, the buffer can be taken away.
#include "companion/ground/input_file.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <system_error>

#include "companion/ground/trouble.h"
#include "driver/ground/files.h"
#include "driver/ground/paths.h"

namespace tova_fw_builder {
namespace {

[[noreturn]] void fail(int error) {
  throw std::runtime_error(std::string("cannot be read: ") +
                           std::strerror(error));
}

}  // namespace

std::size_t read_head(const std::string& path, std::span<std::uint8_t> bytes) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(
      open_c_stream(path), std::fclose);
  if (file == nullptr) fail(errno);
  std::setvbuf(file.get(), nullptr, _IONBF, 0);
  const std::size_t count =
      std::fread(bytes.data(), 1, bytes.size(), file.get());
  if (std::ferror(file.get()) != 0) fail(errno);  // as reading a folder does
  return count;
}

bool is_file(const std::string& path) {
  std::error_code ignored;
  return std::filesystem::is_regular_file(native_path(path), ignored);
}

bool is_pipe(const std::string& path) {
  std::error_code ignored;
  return std::filesystem::is_fifo(native_path(path), ignored);
}

void require_no_pipe(const std::string& path) {
  if (!is_pipe(path)) return;
  throw FileError(
      {path, "this is a pipe, and is read more than once: name a file"});
}

std::string why_unreadable(const std::string& path) {
  try {
    std::uint8_t first = 0;
    read_head(path, {&first, 1});
    return "cannot be read";
  } catch (const std::exception& error) {
    return error.what();
  }
}

}  // namespace tova_fw_builder
