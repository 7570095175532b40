#include "inspect/byte_source.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "companion/ground/system_files.h"
#include "companion/ground/trouble.h"
#include "crypto/sha_hash.h"
#include "driver/ground/files.h"
#include "driver/ground/paths.h"

namespace tova_fw_builder {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kPiece = 256 * 1024;

[[noreturn]] void refuse(const std::string& path, const std::string& reason) {
  throw FileError({path, "cannot be read: " + reason});
}

WipedBytes rest_of(std::FILE& file, const std::string& path) {
  std::setvbuf(&file, nullptr, _IONBF, 0);  // it would keep a copy
  WipedBytes bytes;
  for (std::size_t count = kPiece; count > 0;) {
    const std::size_t there = bytes.size();
    bytes.resize(there + kPiece);
    count = std::fread(bytes.data() + there, 1, kPiece, &file);
    bytes.resize(there + count);
  }
  if (std::ferror(&file) != 0) refuse(path, std::strerror(errno));
  return bytes;
}

// Yields whether it has places: else it is a pipe.
bool can_be_read(const std::string& path) {
  std::error_code error;
  const fs::file_status status = fs::status(native_path(path), error);
  if (error) refuse(path, error.message());
  if (fs::is_directory(status)) refuse(path, "it is a folder: name its files");
  const bool has_places = fs::is_regular_file(status);
  if (!has_places && !fs::is_fifo(status)) refuse(path, "it is a device");
  return has_places;
}

std::shared_ptr<std::FILE> open_file(const std::string& path) {
  std::FILE* const file = open_c_stream(path);
  if (file == nullptr) refuse(path, std::strerror(errno));
  return {file, std::fclose};
}

}  // namespace

ByteSource ByteSource::open(const std::string& path) {
  const bool has_places = can_be_read(path);
  ByteSource source;
  source.path_ = path;
  source.file_ = open_file(path);
  if (!has_places) return of(rest_of(*source.file_, path));
  std::error_code error;
  source.size_ = fs::file_size(native_path(path), error);
  if (error) refuse(path, error.message());
  return source;
}

ByteSource ByteSource::of(std::string_view bytes) {
  return of(WipedBytes(bytes.begin(), bytes.end()));
}

ByteSource ByteSource::of(WipedBytes bytes) {
  ByteSource source;
  source.size_ = bytes.size();
  source.memory_ = std::move(bytes);
  return source;
}

std::shared_ptr<std::FILE> ByteSource::opened() const {
  if (file_ != nullptr || path_.empty()) return file_;
  std::error_code error;
  if (!fs::exists(native_path(path_), error) && !error) return nullptr;
  if (!can_be_read(path_)) refuse(path_, "it has become a pipe");
  return open_file(path_);
}

std::size_t ByteSource::read(std::uint64_t offset, std::span<char> to) const {
  return read_from(opened().get(), offset, to);
}

std::size_t ByteSource::read_from(std::FILE* file, std::uint64_t offset,
                                  std::span<char> to) const {
  std::size_t count = 0;
  if (offset < size_) {
    count = static_cast<std::size_t>(
        std::min<std::uint64_t>(to.size(), size_ - offset));
    if (path_.empty()) {
      std::copy_n(memory_.data() + offset, count, to.data());
    } else if (file == nullptr) {
      count = 0;
    } else {
      const auto got = read_at(*file, offset, to.first(count));
      if (!got) refuse(path_, std::strerror(errno));
      count = *got;
    }
  }
  std::fill(to.begin() + static_cast<std::ptrdiff_t>(count), to.end(), '\0');
  return count;
}

WipedBytes ByteSource::bytes(std::uint64_t offset, std::uint64_t length) const {
  if (offset >= size_) return {};
  WipedBytes bytes(std::min(length, size_ - offset));
  bytes.resize(read(offset, bytes));
  return bytes;
}

bool ByteSource::stands(std::string_view text, std::uint64_t offset) const {
  return view_of(bytes(offset, text.size())) == text;
}

void ByteSource::pieces(std::uint64_t offset, std::uint64_t length,
                        const TakePiece& take) const {
  if (length == 0) return;
  WipedBytes buffer(std::min<std::uint64_t>(kPiece, length));
  const std::shared_ptr<std::FILE> file = opened();
  while (length > 0) {
    const auto wanted = std::min<std::uint64_t>(buffer.size(), length);
    const std::size_t count = read_from(
        file.get(), offset, {buffer.data(), static_cast<std::size_t>(wanted)});
    if (count == 0 || !take({buffer.data(), count})) return;
    offset += count;
    length -= count;
  }
}

std::array<std::uint8_t, 32> sha256_of(const ByteSource& source) {
  Sha256Hash hash;
  source.pieces(0, source.size(), [&hash](std::string_view piece) {
    hash.update(reinterpret_cast<const std::uint8_t*>(piece.data()),
                piece.size());
    return true;
  });
  std::array<std::uint8_t, 32> digest{};
  hash.final(digest.data());
  return digest;
}

}  // namespace tova_fw_builder
