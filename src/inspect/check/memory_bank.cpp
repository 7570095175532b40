// Nothing in a bank tells of the file that was split: it is found by its length
// and its bytes.
#include "inspect/check/memory_bank.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tova_fw_builder {
namespace {

constexpr std::uint64_t kHead = 4096;
constexpr std::uint64_t kWord = 8;  // that split deals out

// The words of one parity, zeros behind the end.
WipedBytes words_of_bank(const CheckedFile& file, bool is_odd,
                         std::uint64_t offset, std::uint64_t length) {
  WipedBytes both(2 * length);
  file.source.read(2 * offset, both);
  WipedBytes words;
  for (std::size_t at = is_odd ? kWord : 0; at < both.size(); at += 2 * kWord) {
    const std::string_view word = view_of(both).substr(at, kWord);
    words.insert(words.end(), word.begin(), word.end());
  }
  return words;
}

bool is_bank_of(const CheckedFile& bank, const CheckedFile& file, bool is_odd) {
  constexpr std::uint64_t kPiece = 64 * 1024;
  const std::uint64_t length = bank.inspected.length;
  // A short piece first: mostly that is enough.
  std::uint64_t piece = kHead;
  for (std::uint64_t at = 0; at < length; at += piece, piece = kPiece) {
    piece = std::min(piece, length - at);
    if (bank.source.bytes(at, piece) !=
        words_of_bank(file, is_odd, at, piece)) {
      return false;
    }
  }
  return true;
}

}  // namespace

MemoryBank memory_bank(const CheckedFile& bank,
                       const std::vector<CheckedFile>& files) {
  for (const CheckedFile& file : files) {
    const std::uint64_t words = file.inspected.length / kWord;
    const std::uint64_t length = bank.inspected.length;
    // Of a single word there is no half.
    if (words < 2 || length != (words + 1) / 2 * kWord) continue;
    for (const bool is_odd : {false, true}) {
      if (is_bank_of(bank, file, is_odd)) return {&file, is_odd};
    }
  }
  return {};
}

}  // namespace tova_fw_builder
