// crypto/sha_hash.h
// SHA-256 and SHA-384 of a message that comes in any number of pieces.
#pragma once

#include <array>
#include <cstdint>
#include <memory>

namespace tova_fw_builder {

// Both throw ZelError with the library operation that failed. They can be
// moved; an object moved from fails with a null-pointer status.
//
// Of a length only the low 32 bits are taken, as a signed number: 2^31 bytes
// fail with status -15, and 2^32 bytes are taken as none.
class Sha256Hash {
 public:
  using Digest = std::array<std::uint8_t, 32>;

  // Starts with `length` bytes at `data`, or with the empty message if either
  // is zero.
  explicit Sha256Hash(const std::uint8_t* data = nullptr,
                      std::uint64_t length = 0);

  void update(const std::uint8_t* data, std::uint64_t length);

  // How many of `length` bytes one update takes, for a message in pieces that
  // counts as one. Fails as that update does.
  static std::uint64_t taken_at_once(std::uint64_t length);

  // Writes 32 bytes, in the order of the standard, and starts anew.
  void final(std::uint8_t* out);

 private:
  std::unique_ptr<std::uint8_t[]> context_;
};

// The same with a digest of 48 bytes.
class Sha384Hash {
 public:
  using Digest = std::array<std::uint8_t, 48>;

  explicit Sha384Hash(const std::uint8_t* data = nullptr,
                      std::uint64_t length = 0);
  void update(const std::uint8_t* data, std::uint64_t length);
  static std::uint64_t taken_at_once(std::uint64_t length);
  void final(std::uint8_t* out);

 private:
  std::unique_ptr<std::uint8_t[]> context_;
};

}  // namespace tova_fw_builder
