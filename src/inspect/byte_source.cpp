#include "inspect/byte_source.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iterator>

#include "companion/ground/trouble.h"
#include "crypto/sha_hash.h"
#include "driver/ground/native_path.h"

namespace tova_fw_builder {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kPiece = 256 * 1024;

[[noreturn]] void refuse(const std::string& path, const std::string& reason) {
  throw FileError({path, "cannot be read: " + reason});
}

}  // namespace

ByteSource ByteSource::open(const std::string& path) {
  std::error_code error;
  const fs::file_status status = fs::status(native_path(path), error);
  if (error) refuse(path, error.message());
  if (fs::is_directory(status)) refuse(path, "it is a folder");
  const bool has_places = fs::is_regular_file(status);
  if (!has_places && !fs::is_fifo(status)) refuse(path, "it is a device");

  ByteSource source;
  source.path_ = path;
  errno = 0;
  auto file =
      std::make_unique<std::ifstream>(native_path(path), std::ios_base::binary);
  if (!*file) refuse(path, std::strerror(errno));
  if (!has_places) {
    return of(std::string(std::istreambuf_iterator<char>(*file), {}));
  }
  file->seekg(0, std::ios_base::end);
  source.size_ = static_cast<std::uint64_t>(std::streamoff{file->tellg()});
  source.file_ = std::move(file);
  return source;
}

ByteSource ByteSource::of(std::string bytes) {
  ByteSource source;
  source.size_ = bytes.size();
  source.memory_ = std::move(bytes);
  return source;
}

std::size_t ByteSource::read(std::uint64_t offset, std::span<char> to) const {
  std::size_t count = 0;
  if (offset < size_) {
    count = static_cast<std::size_t>(
        std::min<std::uint64_t>(to.size(), size_ - offset));
    if (file_ == nullptr) {
      std::copy_n(memory_.data() + offset, count, to.data());
    } else {
      file_->clear();
      file_->seekg(static_cast<std::streamoff>(offset));
      file_->read(to.data(), static_cast<std::streamsize>(count));
      if (file_->bad()) refuse(path_, std::strerror(errno));
      count = static_cast<std::size_t>(file_->gcount());
    }
  }
  std::fill(to.begin() + static_cast<std::ptrdiff_t>(count), to.end(), '\0');
  return count;
}

std::string ByteSource::bytes(std::uint64_t offset,
                              std::uint64_t length) const {
  if (offset >= size_) return {};
  std::string bytes(std::min(length, size_ - offset), '\0');
  bytes.resize(read(offset, bytes));
  return bytes;
}

void ByteSource::pieces(std::uint64_t offset, std::uint64_t length,
                        const TakePiece& take) const {
  std::string buffer(std::min<std::uint64_t>(kPiece, length), '\0');
  while (length > 0) {
    const auto wanted = std::min<std::uint64_t>(buffer.size(), length);
    const std::size_t count =
        read(offset, {buffer.data(), static_cast<std::size_t>(wanted)});
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
