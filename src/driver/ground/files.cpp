// Opening and reading files.
#include "driver/ground/files.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <vector>

#include "driver/ground/paths.h"

namespace tova_fw_builder {

namespace {

// Fits the second-level cache.
constexpr std::size_t kPiece = 256 * 1024;

// Room for a piece starts a page. Were it some bytes behind the start of one,
// as long blocks of memory are, the processor would take what it loads from a
// file's page for bytes that it is still storing: a third of the speed.
struct alignas(4096) Page {
  std::array<std::uint8_t, 4096> bytes;
};

using std::filesystem::file_type;

file_type type_of(const std::string& path) {
  std::error_code ignored;
  return std::filesystem::status(native_path(path), ignored).type();
}

[[noreturn]] void refuse_to_open(const std::string& path) {
  throw std::runtime_error("Failed to open file: " + path);
}

}  // namespace

std::unique_ptr<std::ifstream> open_binary_input(const std::string& path) {
  return open_input(path);
}

std::unique_ptr<std::ifstream> open_input(const std::string& path) {
  auto in = try_open_input(path);
  if (!in->is_open()) refuse_to_open(path);
  return in;
}

std::unique_ptr<std::ifstream> try_open_input(const std::string& path) {
  // A plain stream opens a directory and then reads nothing from it.
  const file_type type = type_of(path);
  auto in = std::make_unique<std::ifstream>();
  if (type != file_type::directory) {
    in->open(native_path(path), std::ios_base::binary);
  }
  // Some devices never end, so the text of none is read: it is at its end at
  // once. Sections of an ELF, whose number of bytes is known, are.
  if (type == file_type::character) in->setstate(std::ios_base::eofbit);
  return in;
}

std::ofstream open_output(const std::string& path) {
  return std::ofstream(native_path(path), std::ios_base::binary);
}

std::fstream open_output_to_read(const std::string& path) {
  return std::fstream(native_path(path),
                      std::ios_base::binary | std::ios_base::in |
                          std::ios_base::out | std::ios_base::trunc);
}

std::FILE* open_c_stream(const std::string& path) {
#ifdef _WIN32
  return _wfopen(native_path(path).c_str(), L"rb");
#else
  return std::fopen(path.c_str(), "rb");
#endif
}

std::size_t read_start(const std::string& path, std::span<std::uint8_t> bytes) {
  const file_type type = type_of(path);
  // No library's std::ifstream can be trusted to keep no copy: it may read
  // through a C stream whose buffer is out of reach. Of a C stream the buffer
  // can be taken away.
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(
      type == file_type::directory ? nullptr : open_c_stream(path),
      std::fclose);
  if (file == nullptr) refuse_to_open(path);
  if (type == file_type::character) return 0;
  std::setvbuf(file.get(), nullptr, _IONBF, 0);
  return std::fread(bytes.data(), 1, bytes.size(), file.get());
}

std::uint64_t file_length(std::istream& in, const std::string& path) {
  in.seekg(0, std::ios_base::end);
  const std::streamoff length = in.tellg();
  in.seekg(0);
  // A pipe tells -1.
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
    // Fewer than wanted fail the stream, which ends the loop.
    length -= got;
  }
}

void write_bytes(std::ostream& out, std::span<const std::uint8_t> bytes) {
  out.write(reinterpret_cast<const char*>(bytes.data()),
            static_cast<std::streamsize>(bytes.size()));
}

std::uint64_t position_of(std::ostream& out) {
  return static_cast<std::uint64_t>(std::streamoff{out.tellp()});
}

void copy_bytes(std::istream& in, std::uint64_t length, std::ostream& out) {
  read_in_pieces(in, length, [&out](std::span<const std::uint8_t> bytes) {
    write_bytes(out, bytes);
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
