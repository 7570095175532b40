// The frame of a fuzz target.
#include "harness.h"

#include <signal.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "driver/ground/log.h"

namespace {

// An output may grow to any size that an input asks for; only the first bytes
// are worth the time. Writes beyond them fail, as on a full disk.
constexpr rlim_t kLargestFile = 8 << 20;

class NullBuffer : public std::streambuf {
 protected:
  int overflow(int c) override { return c == EOF ? 0 : c; }
  std::streamsize xsputn(const char*, std::streamsize n) override { return n; }
};

class Scratch {
 public:
  Scratch() {
    std::string name = std::filesystem::is_directory("/dev/shm")
                           ? "/dev/shm/tova-fuzz-XXXXXX"
                           : "/tmp/tova-fuzz-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) abort();
    path = name;
    const rlimit limit{kLargestFile, kLargestFile};
    setrlimit(RLIMIT_FSIZE, &limit);
    signal(SIGXFSZ, SIG_IGN);
    std::cout.rdbuf(&null_buffer_);
    tova_fw_builder::set_log_level(tova_fw_builder::kLogDetail);
  }
  ~Scratch() {
    std::cout.rdbuf(nullptr);
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
  std::filesystem::path path;

 private:
  NullBuffer null_buffer_;
};

const std::filesystem::path& scratch() {
  static const Scratch folder;
  return folder.path;
}

}  // namespace

std::vector<std::string> cut(const std::string& input, std::size_t count) {
  std::vector<std::string> files;
  std::size_t start = 0;
  while (files.size() + 1 < count) {
    const std::size_t end = std::min(input.find('|', start), input.size());
    files.push_back(input.substr(start, end - start));
    start = std::min(end + 1, input.size());
  }
  files.push_back(input.substr(start));
  return files;
}

std::string put(const std::string& name, const std::string& bytes) {
  const auto path = scratch() / name;
  std::ofstream(path, std::ios::binary) << bytes;
  return path.string();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  std::filesystem::current_path(scratch());
  try {
    fuzz_one(std::string(reinterpret_cast<const char*>(data), size));
  } catch (const std::exception&) {
  }
  return 0;
}
