#include "companion/ground/output_file.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <system_error>

#include "companion/ground/standard_output.h"
#include "companion/ground/trouble.h"
#include "driver/ground/paths.h"

namespace tova_fw_builder {
namespace {

namespace fs = std::filesystem;

constexpr auto kWrite = std::ios_base::out | std::ios_base::binary;

[[noreturn]] void fail(const std::string& reason) {
  throw std::runtime_error("cannot be written: " + reason);
}

[[noreturn]] void fail(int error) {
  fail(error == 0 ? "unknown" : std::strerror(error));
}

[[noreturn]] void refuse_terminal() {
  throw std::runtime_error(
      "private numbers are not shown on a terminal: name a file");
}

// The place behind symbolic links, also behind one to a file that isn't there.
fs::path followed(fs::path path) {
  std::error_code error;
  // Links of the system to a pipe have no path behind them.
  if (fs::exists(path, error) && !fs::is_regular_file(path, error)) return path;
  for (int links = 0; links < 40 && fs::is_symlink(path, error); ++links) {
    path = path.parent_path() / fs::read_symlink(path, error);
    if (error) break;
  }
  // What isn't there yet is no trouble here, and other troubles show again.
  return path;
}

}  // namespace

template <typename T>
T OutputFile::Buffer::noted(T result, bool failed) {
  if (failed && error_ == 0) error_ = errno;
  return result;
}

// What is long in the making would go on for nobody.
bool OutputFile::Buffer::ends_here() {
  if (!is_interrupted(held)) return false;
  errno = EINTR;
  return noted(true, true);
}

OutputFile::Buffer::int_type OutputFile::Buffer::overflow(int_type c) {
  if (ends_here()) return traits_type::eof();
  const int_type result = std::filebuf::overflow(c);
  return noted(result, result == traits_type::eof());
}

std::streamsize OutputFile::Buffer::xsputn(const char* bytes,
                                           std::streamsize count) {
  // Asked only where the buffer is full: a call of the system's each time.
  if (count >= epptr() - pptr() && ends_here()) return 0;
  const std::streamsize written = std::filebuf::xsputn(bytes, count);
  return noted(written, written != count);
}

int OutputFile::Buffer::sync() {
  const int result = std::filebuf::sync();
  return noted(result, result != 0);
}

OutputFile::OutputFile(const std::string& path, Rights rights)
    : path_(path_text(followed(native_path(path)))), rights_(rights) {
  errno = 0;
  const fs::path place = native_path(path_);
  std::error_code ignored;
  if (fs::exists(place, ignored) && !fs::is_regular_file(place, ignored)) {
    if (rights == Rights::kPrivate && fs::is_character_file(place, ignored) &&
        is_terminal(path_)) {
      refuse_terminal();
    }
    if (!buffer_.open(place, kWrite)) fail(errno);
    return;
  }
  held_.emplace();
  buffer_.held = held_->signals;
  beside_ = create_beside(path_);
  if (beside_.empty()) fail(errno);
  // Without a buffer, no copy of private bytes stays behind in memory.
  if (rights_ == Rights::kPrivate) buffer_.pubsetbuf(nullptr, 0);
  if (buffer_.open(native_path(beside_), kWrite)) return;
  const int error = errno;
  fs::remove(native_path(beside_), ignored);
  fail(error);
}

OutputFile::~OutputFile() {
  if (beside_.empty()) return;
  buffer_.close();  // a file that is open can't be removed on every system
  std::error_code ignored;
  fs::remove(native_path(beside_), ignored);
}

void OutputFile::commit() {
  errno = 0;
  const bool closed = buffer_.close() != nullptr;
  if (!closed || !out_) fail(buffer_.error() != 0 ? buffer_.error() : errno);
  if (beside_.empty()) return;
  if (rights_ == Rights::kUsual && !give_usual_rights(beside_, path_)) {
    fail(errno);
  }
  std::error_code error;
  fs::rename(native_path(beside_), native_path(path_), error);
  if (error) fail(error.message());
  beside_.clear();
}

void write_output_file(const std::string& path, std::string_view bytes,
                       OutputFile::Rights rights) {
  OutputFile file(path, rights);
  file.stream().write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.commit();
}

void write_output(const std::string& name, std::string_view bytes,
                  OutputFile::Rights rights) {
  if (!names_standard_output(name)) {
    write_output_file(name, bytes, rights);
  } else if (rights == OutputFile::Rights::kUsual) {
    std::cout << bytes;
  } else if (standard_output_is_terminal()) {
    refuse_terminal();
  } else {
    print_private(bytes);
  }
}

void require_no_input(const std::string& output,
                      const std::vector<std::string>& inputs) {
  const fs::path place = native_path(output);
  std::error_code ignored;
  // A device, such as a terminal, can well be both.
  if (!fs::is_regular_file(place, ignored)) return;
  for (const std::string& input : inputs) {
    if (!fs::equivalent(place, native_path(input), ignored)) continue;
    throw FileError({output, "is an input of this command" +
                                 (input == output ? "" : ", " + input) +
                                 ": name another output"});
  }
}

bool are_one_file(const std::string& a, const std::string& b) {
  std::error_code error;
  const auto place = [&error](const std::string& name) {
    return fs::weakly_canonical(fs::absolute(native_path(name)), error);
  };
  return !a.empty() && !b.empty() && place(a) == place(b) && !error &&
         !fs::is_other(native_path(a), error);
}

}  // namespace tova_fw_builder
