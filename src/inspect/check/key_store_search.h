// inspect/check/key_store_search.h
// Stores of trusted keys among the contents.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "inspect/wiped_bytes.h"

namespace tova_fw_builder {

struct CheckedFile;

struct FoundStore {
  const CheckedFile* file = nullptr;
  std::uint64_t offset = 0;
  bool is_expected = false;
};

// Looks for stores in the bytes of one file, which come in pieces: for one of
// these very bytes, and for whatever else looks like one.
class KeyStoreSearch {
 public:
  // Of what looks like a store, at the most.
  static constexpr std::size_t kMostKeys = 32;

  KeyStoreSearch(const CheckedFile& file, std::string_view expected)
      : file_(file), expected_(expected) {}

  void take(std::uint64_t offset, std::string_view piece);
  void finish() { scan(0); }

  const std::vector<FoundStore>& found() const { return found_; }

 private:
  // Looks at what begins in the window ahead of its last `left` bytes.
  void scan(std::size_t left);

  const CheckedFile& file_;
  std::string_view expected_;
  WipedBytes window_;
  std::uint64_t offset_ = 0;  // of the window
  std::vector<FoundStore> found_;
};

}  // namespace tova_fw_builder
