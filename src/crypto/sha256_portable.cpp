// SHA-256's compression function in plain C++. The message schedule is kept as
// a window of 16 words that moves with the rounds.
#include <bit>

#include "crypto/sha_blocks.h"
#include "crypto/sha_constants.h"

namespace tova_fw_builder {

namespace {

using Word = std::uint32_t;

Word big_endian(const std::uint8_t* p) {
  return Word{p[0]} << 24 | Word{p[1]} << 16 | Word{p[2]} << 8 | Word{p[3]};
}

Word next_word(const Word* w, int t) {
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
  const Word t1 = h + sum1 + choice + k_plus_w;
  d += t1;
  h = t1 + sum0 + majority;
}

}  // namespace

void sha256_blocks_portable(Word* state, const std::uint8_t* blocks,
                            std::size_t count) {
  for (; count > 0; --count, blocks += 64) {
    Word w[16];
    for (int t = 0; t < 16; ++t) w[t] = big_endian(blocks + 4 * t);

    Word a = state[0], b = state[1], c = state[2], d = state[3];
    Word e = state[4], f = state[5], g = state[6], h = state[7];
    for (int t = 0; t < 64; t += 16) {
      if (t > 0) {
        for (int i = 0; i < 16; ++i) w[i] = next_word(w, i);
      }
      const Word* k = kSha256Rounds + t;
      for (int i = 0; i < 16; i += 8) {
        round(a, b, c, d, e, f, g, h, k[i] + w[i]);
        round(h, a, b, c, d, e, f, g, k[i + 1] + w[i + 1]);
        round(g, h, a, b, c, d, e, f, k[i + 2] + w[i + 2]);
        round(f, g, h, a, b, c, d, e, k[i + 3] + w[i + 3]);
        round(e, f, g, h, a, b, c, d, k[i + 4] + w[i + 4]);
        round(d, e, f, g, h, a, b, c, k[i + 5] + w[i + 5]);
        round(c, d, e, f, g, h, a, b, k[i + 6] + w[i + 6]);
        round(b, c, d, e, f, g, h, a, k[i + 7] + w[i + 7]);
      }
    }
    const Word result[8] = {a, b, c, d, e, f, g, h};
    for (int i = 0; i < 8; ++i) state[i] += result[i];
  }
}

}  // namespace tova_fw_builder
