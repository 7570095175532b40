// crypto/sha_hash.h
// SHA-256 and SHA-384 of a message that comes in any number of pieces.
#pragma once

#include <array>
#include <cstdint>
#include <memory>

namespace tova_fw_builder {

// Throws ZelError with the library operation that failed. It can be moved; an
// object moved from fails with a null-pointer status.
//
// Of a length only the low 32 bits are taken, as a signed number: 2^31 bytes
// fail with status -15, and 2^32 bytes are taken as none.
template <std::size_t kHashBytes>
class ShaHash {
 public:
  using Digest = std::array<std::uint8_t, kHashBytes>;

  // Starts with `length` bytes at `data`, or with the empty message if either
  // is zero.
  explicit ShaHash(const std::uint8_t* data = nullptr,
                   std::uint64_t length = 0);

  void update(const std::uint8_t* data, std::uint64_t length);

  // How many of `length` bytes one update takes, for a message in pieces that
  // counts as one. Fails as that update does.
  static std::uint64_t taken_at_once(std::uint64_t length);

  // Writes the digest, in the order of the standard, and starts anew.
  void final(std::uint8_t* out);

 private:
  std::unique_ptr<std::uint8_t[]> context_;
};

using Sha256Hash = ShaHash<32>;
using Sha384Hash = ShaHash<48>;

extern template class ShaHash<32>;
extern template class ShaHash<48>;

}  // namespace tova_fw_builder
