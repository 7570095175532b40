// SHA-256's compression function in plain C++. The message schedule is kept as
// a window of 16 words that moves with the rounds: each word is computed right
// ahead of its round, so that the processor works on both at once.
#include <bit>

#include "crypto/sha_blocks.h"
#include "crypto/sha_constants.h"

namespace tova_fw_builder {

namespace {

using Word = std::uint32_t;

struct Working {
  Word a, b, c, d, e, f, g, h;
};

[[gnu::always_inline]] inline Word big_endian(const std::uint8_t* p) {
  return Word{p[0]} << 24 | Word{p[1]} << 16 | Word{p[2]} << 8 | Word{p[3]};
}

[[gnu::always_inline]] inline Word next_word(const Word* w, int t) {
  const Word w2 = w[(t + 14) & 15];
  const Word w15 = w[(t + 1) & 15];
  const Word s1 = std::rotr(w2, 17) ^ std::rotr(w2, 19) ^ (w2 >> 10);
  const Word s0 = std::rotr(w15, 7) ^ std::rotr(w15, 18) ^ (w15 >> 3);
  return s1 + w[(t + 9) & 15] + s0 + w[t & 15];
}

// One round. Instead of moving the eight words on, the caller turns their
// names by one place. Inlined by force: the words have to stay in registers.
[[gnu::always_inline]] inline void round(Word a, Word b, Word c, Word& d,
                                         Word e, Word f, Word g, Word& h,
                                         Word k_plus_w) {
  const Word sum1 = std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25);
  const Word choice = g ^ (e & (f ^ g));
  const Word sum0 = std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22);
  // a ^ b is the next round's b ^ c, and the compiler keeps it.
  const Word majority = b ^ ((a ^ b) & (b ^ c));
  const Word t1 = (h + k_plus_w) + (choice + sum1);
  d += t1;
  h = t1 + sum0 + majority;
}

// The rounds from i on, counted like `k`; `word` yields a round's word.
template <typename WordOfRound>
[[gnu::always_inline]] inline void eight_rounds(Working& s, const Word* k,
                                                int i,
                                                const WordOfRound& word) {
  auto& [a, b, c, d, e, f, g, h] = s;
  round(a, b, c, d, e, f, g, h, k[i] + word(i));
  round(h, a, b, c, d, e, f, g, k[i + 1] + word(i + 1));
  round(g, h, a, b, c, d, e, f, k[i + 2] + word(i + 2));
  round(f, g, h, a, b, c, d, e, k[i + 3] + word(i + 3));
  round(e, f, g, h, a, b, c, d, k[i + 4] + word(i + 4));
  round(d, e, f, g, h, a, b, c, k[i + 5] + word(i + 5));
  round(c, d, e, f, g, h, a, b, k[i + 6] + word(i + 6));
  round(b, c, d, e, f, g, h, a, k[i + 7] + word(i + 7));
}

}  // namespace

void sha256_blocks_portable(Word* state, const std::uint8_t* blocks,
                            std::size_t count) {
  for (; count > 0; --count, blocks += 64) {
    Word w[16];
    const auto first = [&](int i) { return w[i] = big_endian(blocks + 4 * i); };
    const auto next = [&](int i) { return w[i] = next_word(w, i); };
    Working s = {state[0], state[1], state[2], state[3],
                 state[4], state[5], state[6], state[7]};
    eight_rounds(s, kSha256Rounds, 0, first);
    eight_rounds(s, kSha256Rounds, 8, first);
    for (int t = 16; t < 64; t += 16) {
      eight_rounds(s, kSha256Rounds + t, 0, next);
      eight_rounds(s, kSha256Rounds + t, 8, next);
    }
    const Word result[8] = {s.a, s.b, s.c, s.d, s.e, s.f, s.g, s.h};
    for (int i = 0; i < 8; ++i) state[i] += result[i];
  }
}

}  // namespace tova_fw_builder
