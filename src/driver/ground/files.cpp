// Opening and reading files, and paths as plain strings.
#include "driver/ground/files.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <stdexcept>
#include <vector>

namespace tova_fw_builder {

namespace {

// Fits the second-level cache.
constexpr std::size_t kPiece = 256 * 1024;
constexpr std::size_t kLongestDirectory = 259;

constexpr char kSeparator =
    static_cast<char>(std::filesystem::path::preferred_separator);

// Room for a piece starts a page. Were it some bytes behind the start of one,
// as long blocks of memory are, the processor would take what it loads from a
// file's page for bytes that it is still storing: a third of the speed.
struct alignas(4096) Page {
  std::array<std::uint8_t, 4096> bytes;
};

}  // namespace

std::unique_ptr<std::ifstream> open_binary_input(const std::string& path,
                                                 std::span<char> buffer) {
  return open_input(path, std::ios_base::binary, buffer);
}

std::unique_ptr<std::ifstream> open_input(const std::string& path,
                                          std::ios_base::openmode mode,
                                          std::span<char> buffer) {
  auto in = try_open_input(path, mode, buffer);
  if (!in->is_open()) throw std::runtime_error("Failed to open file: " + path);
  return in;
}

std::unique_ptr<std::ifstream> try_open_input(const std::string& path,
                                              std::ios_base::openmode mode,
                                              std::span<char> buffer) {
  // A plain stream opens a directory and then reads nothing from it.
  std::error_code ignored;
  const auto type = std::filesystem::status(path, ignored).type();
  auto in = std::make_unique<std::ifstream>();
  if (!buffer.empty()) {
    in->rdbuf()->pubsetbuf(buffer.data(),
                           static_cast<std::streamsize>(buffer.size()));
  }
  if (type != std::filesystem::file_type::directory) {
    in->open(path, mode | std::ios_base::in);
  }
  if (type == std::filesystem::file_type::character) {
    in->setstate(std::ios_base::eofbit);
  }
  return in;
}

std::string current_directory() {
  std::error_code error;
  std::string path = std::filesystem::current_path(error).string();
  if (error || path.size() > kLongestDirectory) {
    throw std::runtime_error("Cannot get current working directory");
  }
  return path;
}

std::string directory_of(const std::string& path) {
  return path.substr(0, path.find_last_of("\\/") + 1);
}

std::string join_path(const std::string& directory, const std::string& name) {
  return directory + kSeparator + name;
}

std::uint64_t file_length(std::istream& in, const std::string& path) {
  in.seekg(0, std::ios_base::end);
  const std::streamoff length = in.tellg();
  in.seekg(0);
  if (length < 0) {
    throw std::runtime_error("Cannot tell the length of file: " + path);
  }
  return static_cast<std::uint64_t>(length);
}

void read_in_pieces(std::istream& in, std::uint64_t length,
                    const TakeBytes& take) {
  std::vector<Page> pages(
      (std::min<std::uint64_t>(length, kPiece) + sizeof(Page) - 1) /
      sizeof(Page));
  auto* piece = reinterpret_cast<std::uint8_t*>(pages.data());
  while (length > 0 && in) {
    const auto wanted = std::min<std::uint64_t>(length, kPiece);
    in.read(reinterpret_cast<char*>(piece),
            static_cast<std::streamsize>(wanted));
    const auto got = static_cast<std::size_t>(in.gcount());
    if (got > 0) take({piece, got});
    length -= got;
  }
}

void copy_bytes(std::istream& in, std::uint64_t length, std::ostream& out) {
  read_in_pieces(in, length, [&out](std::span<const std::uint8_t> bytes) {
    out.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(bytes.size()));
  });
}

void write_zeros(std::ostream& out, std::uint64_t count) {
  static constexpr std::array<char, 4096 * 4> kZeros{};
  while (count > 0 && out) {
    const auto part = std::min<std::uint64_t>(count, kZeros.size());
    out.write(kZeros.data(), static_cast<std::streamsize>(part));
    count -= part;
  }
}

}  // namespace tova_fw_builder
