// SHA-512's compression function in plain C++. The message schedule is kept as
// a window of 16 words that moves with the rounds.
#include <bit>

#include "crypto/sha512_round.h"
#include "crypto/sha_blocks.h"
#include "crypto/sha_constants.h"

namespace tova_fw_builder {

namespace {

using Word = Sha512Word;

Word big_endian(const std::uint8_t* p) {
  Word word = 0;
  for (int i = 0; i < 8; ++i) word = word << 8 | p[i];
  return word;
}

Word next_word(const Word* w, int t) {
  const Word w2 = w[(t + 14) & 15];
  const Word w15 = w[(t + 1) & 15];
  const Word s1 = std::rotr(w2, 19) ^ std::rotr(w2, 61) ^ (w2 >> 6);
  const Word s0 = std::rotr(w15, 1) ^ std::rotr(w15, 8) ^ (w15 >> 7);
  return s1 + w[(t + 9) & 15] + s0 + w[t & 15];
}

}  // namespace

void sha512_blocks_portable(Word* state, const std::uint8_t* blocks,
                            std::size_t count) {
  for (; count > 0; --count, blocks += 128) {
    Word w[16];
    for (int t = 0; t < 16; ++t) w[t] = big_endian(blocks + 8 * t);

    Word a = state[0], b = state[1], c = state[2], d = state[3];
    Word e = state[4], f = state[5], g = state[6], h = state[7];
    for (int t = 0; t < 80; t += 16) {
      if (t > 0) {
        for (int i = 0; i < 16; ++i) w[i] = next_word(w, i);
      }
      const Word* k = kSha512Rounds + t;
      for (int i = 0; i < 16; i += 8) {
        sha512_round(a, b, c, d, e, f, g, h, k[i] + w[i]);
        sha512_round(h, a, b, c, d, e, f, g, k[i + 1] + w[i + 1]);
        sha512_round(g, h, a, b, c, d, e, f, k[i + 2] + w[i + 2]);
        sha512_round(f, g, h, a, b, c, d, e, k[i + 3] + w[i + 3]);
        sha512_round(e, f, g, h, a, b, c, d, k[i + 4] + w[i + 4]);
        sha512_round(d, e, f, g, h, a, b, c, k[i + 5] + w[i + 5]);
        sha512_round(c, d, e, f, g, h, a, b, k[i + 6] + w[i + 6]);
        sha512_round(b, c, d, e, f, g, h, a, k[i + 7] + w[i + 7]);
      }
    }
    const Word result[8] = {a, b, c, d, e, f, g, h};
    for (int i = 0; i < 8; ++i) state[i] += result[i];
  }
}

}  // namespace tova_fw_builder
