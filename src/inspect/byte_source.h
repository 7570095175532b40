// inspect/byte_source.h
#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "inspect/wiped_bytes.h"

namespace tova_fw_builder {

// The bytes of one file, read where they are asked for: of a file of any size
// only the piece in hand is in memory. What has no places, such as a pipe, is
// read into memory once. A file that shrinks meanwhile, or that has gone away
// before it is opened again, reads as if it ended there. No copy of a byte
// stays behind in memory.
class ByteSource {
 public:
  // Throws FileError "cannot be read: " and the reason, also for a folder and
  // for a device, as some of these never end.
  static ByteSource open(const std::string& path);
  // The bytes themselves, or a copy of them.
  static ByteSource of(WipedBytes bytes);
  static ByteSource of(std::string_view bytes);
  ByteSource(ByteSource&&) = default;
  ByteSource& operator=(ByteSource&&) = default;

  std::uint64_t size() const { return size_; }

  // Closes the file but for the time of each call below, which opens it again:
  // a process may have some hundred files open. Nothing for what is in memory.
  void close() { file_.reset(); }

  // Fills `to` with the bytes from `offset` on, and with zeros behind the end.
  // Yields how many the file had. Throws as open() does if the system can't
  // read them; so do all below.
  std::size_t read(std::uint64_t offset, std::span<char> to) const;

  // The bytes from `offset` on, fewer at the end of the file.
  WipedBytes bytes(std::uint64_t offset, std::uint64_t length) const;

  // Whether the text stands at `offset`.
  bool stands(std::string_view text, std::uint64_t offset) const;

  // Hands the bytes on in pieces of at most 256 KiB until `take` yields false.
  using TakePiece = std::function<bool(std::string_view piece)>;
  void pieces(std::uint64_t offset, std::uint64_t length,
              const TakePiece& take) const;

 private:
  ByteSource() = default;

  // Stays open as long as the result lives. Null for what is in memory, or has
  // gone away.
  std::shared_ptr<std::FILE> opened() const;
  std::size_t read_from(std::FILE* file, std::uint64_t offset,
                        std::span<char> to) const;

  std::uint64_t size_ = 0;
  std::string path_;  // empty for what is in memory
  WipedBytes memory_;
  std::shared_ptr<std::FILE> file_;  // null if it is closed
};

// The record at `offset`, as far as the file has it; zero behind that.
template <typename Record>
Wiped<Record> record_at(const ByteSource& source, std::uint64_t offset) {
  static_assert(alignof(Record) == 1);
  Wiped<Record> record;
  source.read(offset, {reinterpret_cast<char*>(&record), sizeof(Record)});
  return record;
}

// SHA-256 of the whole file, as 32 bytes.
std::array<std::uint8_t, 32> sha256_of(const ByteSource& source);

}  // namespace tova_fw_builder
