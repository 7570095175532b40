// driver/ground/stream_digest.h
#pragma once

#include <cstdint>
#include <istream>
#include <span>

#include "driver/ground/files.h"

namespace tova_fw_builder {

// The digest of up to `length` bytes of a stream by Sha256Hash or Sha384Hash.
// They count as one message for the hash, which throws ZelError for a length
// whose low 32 bits are negative.
template <typename Hash>
typename Hash::Digest stream_digest(std::istream& in, std::uint64_t length) {
  Hash hash;
  read_in_pieces(in, Hash::taken_at_once(length),
                 [&hash](std::span<const std::uint8_t> bytes) {
                   hash.update(bytes.data(), bytes.size());
                 });
  typename Hash::Digest digest{};
  hash.final(digest.data());
  return digest;
}

}  // namespace tova_fw_builder
