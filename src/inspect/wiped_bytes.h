// inspect/wiped_bytes.h
// What is read of a file may be a private key, and nobody knows before it was
// looked at: all of it is kept in memory that is wiped before it is given back.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "crypto/secret_buffer.h"

namespace tova_fw_builder {

template <typename T>
struct WipingAllocator {
  using value_type = T;

  T* allocate(std::size_t count) { return std::allocator<T>().allocate(count); }
  void deallocate(T* place, std::size_t count) {
    secure_wipe(place, count * sizeof(T));
    std::allocator<T>().deallocate(place, count);
  }
  bool operator==(const WipingAllocator&) const = default;
};

// A vector and no string, which would keep short texts in itself, where nobody
// wipes them. What it grows out of is wiped, too.
using WipedBytes = std::vector<char, WipingAllocator<char>>;

// The bytes, which end with their owner.
inline std::string_view view_of(const WipedBytes& bytes) {
  return {bytes.data(), bytes.size()};
}

// A wire record, or another plain struct.
template <typename Record>
struct Wiped : Record {
  ~Wiped() { secure_wipe(static_cast<Record*>(this), sizeof(Record)); }
};

}  // namespace tova_fw_builder
