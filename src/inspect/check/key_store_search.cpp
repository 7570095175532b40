// A store is a count and as many records of a type, 0 or 1, and a hash. The
// header of an image doesn't point at it, so it has to be searched for. What
// looks like one: a hash nearly never has fewer than 24 different bytes, and
// numbers, addresses and text nearly always do.
#include "inspect/check/key_store_search.h"

#include <algorithm>
#include <bitset>

#include "signing/keys/key_list.h"

namespace tova_fw_builder {
namespace {

constexpr std::size_t kMostFound = 16;
constexpr std::size_t kLeastBytesOfHash = 24;

bool is_small_number(std::string_view word, unsigned least, unsigned most) {
  const auto low = static_cast<unsigned char>(word[0]);
  return (word[1] | word[2] | word[3]) == 0 && low >= least && low <= most;
}

bool is_hash(std::string_view bytes) {
  std::bitset<256> seen;
  for (const char c : bytes) seen.set(static_cast<unsigned char>(c));
  return seen.count() >= kLeastBytesOfHash;
}

bool is_store(std::string_view bytes) {
  if (!is_small_number(bytes, 1, KeyStoreSearch::kMostKeys) ||
      !is_small_number(bytes.substr(sizeof(Le32)), 0, 1)) {
    return false;
  }
  const auto count = std::size_t{static_cast<unsigned char>(bytes[0])};
  bytes.remove_prefix(sizeof(Le32));
  if (bytes.size() < count * sizeof(StoreEntry)) return false;
  for (std::size_t i = 0; i < count; ++i) {
    const std::string_view entry =
        bytes.substr(i * sizeof(StoreEntry), sizeof(StoreEntry));
    if (!is_small_number(entry, 0, 1) || !is_hash(entry.substr(sizeof(Le32)))) {
      return false;
    }
  }
  return true;
}

}  // namespace

void KeyStoreSearch::take(std::uint64_t offset, std::string_view piece) {
  if (window_.empty()) offset_ = offset;
  window_.insert(window_.end(), piece.begin(), piece.end());
  scan(std::max(sizeof(Le32) + kMostKeys * sizeof(StoreEntry),
                expected_.size()));
}

void KeyStoreSearch::scan(std::size_t left) {
  const std::string_view window = view_of(window_);
  const std::size_t end = window.size() - std::min(left, window.size());
  constexpr std::size_t kLeast = 2 * sizeof(Le32);
  for (std::size_t i = 0; i < end && i + kLeast <= window.size(); ++i) {
    if (found_.size() == kMostFound) break;
    if ((window[i + 1] | window[i + 2] | window[i + 3]) != 0) continue;
    const std::string_view rest = window.substr(i);
    const bool is_expected = rest.starts_with(expected_);
    if (is_expected || is_store(rest)) {
      found_.push_back({&file_, offset_ + i, is_expected});
    }
  }
  window_.erase(window_.begin(),
                window_.begin() + static_cast<std::ptrdiff_t>(end));
  offset_ += end;
}

}  // namespace tova_fw_builder
