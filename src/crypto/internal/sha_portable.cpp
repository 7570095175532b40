// The compression functions in plain C++. The message schedule is kept as a
// window of 16 words that moves with the rounds: each word is computed right
// ahead of its round, so that the processor works on both at once.
#include <bit>

#include "crypto/internal/sha_blocks.h"
#include "crypto/internal/sha_constants.h"
#include "crypto/internal/sha_round.h"

namespace tova_fw_builder {

namespace {

template <typename Word>
[[gnu::always_inline]] inline Word big_endian(const std::uint8_t* p) {
  Word word = 0;
  for (std::size_t i = 0; i < sizeof(Word); ++i) word = word << 8 | p[i];
  return word;
}

std::uint32_t sigma0(std::uint32_t w) {
  return std::rotr(w, 7) ^ std::rotr(w, 18) ^ (w >> 3);
}
std::uint64_t sigma0(std::uint64_t w) {
  return std::rotr(w, 1) ^ std::rotr(w, 8) ^ (w >> 7);
}

std::uint32_t sigma1(std::uint32_t w) {
  return std::rotr(w, 17) ^ std::rotr(w, 19) ^ (w >> 10);
}
std::uint64_t sigma1(std::uint64_t w) {
  return std::rotr(w, 19) ^ std::rotr(w, 61) ^ (w >> 6);
}

template <typename Word>
[[gnu::always_inline]] inline Word next_word(const Word* w, int t) {
  // The window is a ring: word t takes the place of word t - 16.
  return w[t & 15] + sigma0(w[(t + 1) & 15]) + w[(t + 9) & 15] +
         sigma1(w[(t + 14) & 15]);
}

// The rounds from i on, counted like `k`; `word` yields a round's word.
template <typename Word, typename WordOfRound>
[[gnu::always_inline]] inline void eight_rounds(ShaWorking<Word>& s,
                                                const Word* k, int i,
                                                const WordOfRound& word) {
  auto& [a, b, c, d, e, f, g, h] = s;
  sha_round(a, b, c, d, e, f, g, h, k[i] + word(i));
  sha_round(h, a, b, c, d, e, f, g, k[i + 1] + word(i + 1));
  sha_round(g, h, a, b, c, d, e, f, k[i + 2] + word(i + 2));
  sha_round(f, g, h, a, b, c, d, e, k[i + 3] + word(i + 3));
  sha_round(e, f, g, h, a, b, c, d, k[i + 4] + word(i + 4));
  sha_round(d, e, f, g, h, a, b, c, k[i + 5] + word(i + 5));
  sha_round(c, d, e, f, g, h, a, b, k[i + 6] + word(i + 6));
  sha_round(b, c, d, e, f, g, h, a, k[i + 7] + word(i + 7));
}

// A block has 16 words; `k` has a constant for each of the rounds.
template <typename Word, std::size_t kRounds>
void take_blocks(Word* state, const std::uint8_t* blocks, std::size_t count,
                 const std::array<Word, kRounds>& k) {
  constexpr int kWidth = sizeof(Word);
  for (; count > 0; --count, blocks += 16 * kWidth) {
    Word w[16];
    const auto first = [&w, blocks](int i) {
      return w[i] = big_endian<Word>(blocks + i * kWidth);
    };
    const auto next = [&w](int i) { return w[i] = next_word(w, i); };
    ShaWorking<Word> s = sha_working_copy(state);
    eight_rounds(s, k.data(), 0, first);
    eight_rounds(s, k.data(), 8, first);
    for (std::size_t t = 16; t < kRounds; t += 16) {
      eight_rounds(s, k.data() + t, 0, next);
      eight_rounds(s, k.data() + t, 8, next);
    }
    sha_add_to(state, s);
  }
}

}  // namespace

void sha256_blocks_portable(std::uint32_t* state, const std::uint8_t* blocks,
                            std::size_t count) {
  take_blocks(state, blocks, count, kSha256Rounds);
}

void sha512_blocks_portable(std::uint64_t* state, const std::uint8_t* blocks,
                            std::size_t count) {
  take_blocks(state, blocks, count, kSha512Rounds);
}

}  // namespace tova_fw_builder
