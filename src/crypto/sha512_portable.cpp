// SHA-512's compression function in plain C++. The message schedule is kept as
// a window of 16 words that moves with the rounds: each word is computed right
// ahead of its round, so that the processor works on both at once.
#include <bit>

#include "crypto/sha512_round.h"
#include "crypto/sha_blocks.h"
#include "crypto/sha_constants.h"

namespace tova_fw_builder {

namespace {

using Word = Sha512Word;

[[gnu::always_inline]] inline Word big_endian(const std::uint8_t* p) {
  Word word = 0;
  for (int i = 0; i < 8; ++i) word = word << 8 | p[i];
  return word;
}

[[gnu::always_inline]] inline Word next_word(const Word* w, int t) {
  const Word w2 = w[(t + 14) & 15];
  const Word w15 = w[(t + 1) & 15];
  const Word s1 = std::rotr(w2, 19) ^ std::rotr(w2, 61) ^ (w2 >> 6);
  const Word s0 = std::rotr(w15, 1) ^ std::rotr(w15, 8) ^ (w15 >> 7);
  return s1 + w[(t + 9) & 15] + s0 + w[t & 15];
}

// The rounds from i on, counted like `k`; `word` yields a round's word.
template <typename WordOfRound>
[[gnu::always_inline]] inline void eight_rounds(Sha512Working& s, const Word* k,
                                                int i,
                                                const WordOfRound& word) {
  auto& [a, b, c, d, e, f, g, h] = s;
  sha512_round(a, b, c, d, e, f, g, h, k[i] + word(i));
  sha512_round(h, a, b, c, d, e, f, g, k[i + 1] + word(i + 1));
  sha512_round(g, h, a, b, c, d, e, f, k[i + 2] + word(i + 2));
  sha512_round(f, g, h, a, b, c, d, e, k[i + 3] + word(i + 3));
  sha512_round(e, f, g, h, a, b, c, d, k[i + 4] + word(i + 4));
  sha512_round(d, e, f, g, h, a, b, c, k[i + 5] + word(i + 5));
  sha512_round(c, d, e, f, g, h, a, b, k[i + 6] + word(i + 6));
  sha512_round(b, c, d, e, f, g, h, a, k[i + 7] + word(i + 7));
}

}  // namespace

void sha512_blocks_portable(Word* state, const std::uint8_t* blocks,
                            std::size_t count) {
  for (; count > 0; --count, blocks += 128) {
    Word w[16];
    const auto first = [&](int i) { return w[i] = big_endian(blocks + 8 * i); };
    const auto next = [&](int i) { return w[i] = next_word(w, i); };
    Sha512Working s = sha512_working_copy(state);
    eight_rounds(s, kSha512Rounds, 0, first);
    eight_rounds(s, kSha512Rounds, 8, first);
    for (int t = 16; t < 80; t += 16) {
      eight_rounds(s, kSha512Rounds + t, 0, next);
      eight_rounds(s, kSha512Rounds + t, 8, next);
    }
    sha512_add_to(state, s);
  }
}

}  // namespace tova_fw_builder
