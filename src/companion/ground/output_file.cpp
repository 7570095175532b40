#include "companion/ground/output_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>

namespace tova_fw_builder {
namespace {

namespace fs = std::filesystem;

constexpr auto kWrite = std::ios_base::out | std::ios_base::binary;

[[noreturn]] void fail(int error) {
  throw std::runtime_error(std::string("cannot be written: ") +
                           (error == 0 ? "unknown" : std::strerror(error)));
}

// The place behind symbolic links, also behind one to a file that isn't there.
fs::path followed(fs::path path) {
  for (int links = 0; links < 40 && fs::is_symlink(path); ++links) {
    path = path.parent_path() / fs::read_symlink(path);
  }
  return path;
}

mode_t usual_rights(const std::string& path) {
  struct stat existing = {};
  if (stat(path.c_str(), &existing) == 0) return existing.st_mode & 07777;
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

}  // namespace

template <typename T>
T OutputFile::Buffer::noted(T result, bool failed) {
  if (failed && error_ == 0) error_ = errno;
  return result;
}

OutputFile::Buffer::int_type OutputFile::Buffer::overflow(int_type c) {
  const int_type result = std::filebuf::overflow(c);
  return noted(result, result == traits_type::eof());
}

std::streamsize OutputFile::Buffer::xsputn(const char* bytes,
                                           std::streamsize count) {
  const std::streamsize written = std::filebuf::xsputn(bytes, count);
  return noted(written, written != count);
}

int OutputFile::Buffer::sync() {
  const int result = std::filebuf::sync();
  return noted(result, result != 0);
}

OutputFile::OutputFile(const std::string& path, Rights rights)
    : path_(followed(path)), rights_(rights) {
  errno = 0;
  if (fs::exists(path_) && !fs::is_regular_file(path_)) {
    if (!buffer_.open(path_, kWrite)) fail(errno);
    return;
  }
  beside_ = path_ + ".XXXXXX";
  const int file = mkstemp(beside_.data());
  if (file < 0) {
    const int error = errno;
    beside_.clear();
    fail(error);
  }
  close(file);
  // Without a buffer, no copy of private bytes stays behind in memory.
  if (rights_ == Rights::kPrivate) buffer_.pubsetbuf(nullptr, 0);
  if (!buffer_.open(beside_, kWrite)) fail(errno);
}

OutputFile::~OutputFile() {
  if (!beside_.empty()) unlink(beside_.c_str());
}

void OutputFile::commit() {
  errno = 0;
  const bool closed = buffer_.close() != nullptr;
  if (!closed || !out_) fail(buffer_.error() != 0 ? buffer_.error() : errno);
  if (beside_.empty()) return;
  if (rights_ == Rights::kUsual &&
      chmod(beside_.c_str(), usual_rights(path_)) != 0) {
    fail(errno);
  }
  if (std::rename(beside_.c_str(), path_.c_str()) != 0) fail(errno);
  beside_.clear();
}

void write_output_file(const std::string& path, std::string_view bytes,
                       OutputFile::Rights rights) {
  OutputFile file(path, rights);
  file.stream().write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.commit();
}

}  // namespace tova_fw_builder
