// SHA-512's compression function in plain C++. The message schedule is kept as
// a window of 16 words that moves with the rounds.
#include <bit>

#include "crypto/sha_blocks.h"
#include "crypto/sha_constants.h"

namespace tova_fw_builder {

namespace {

using Word = std::uint64_t;

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

// One round. Instead of moving the eight words on, the caller turns their
// names by one place.
void round(Word a, Word b, Word c, Word& d, Word e, Word f, Word g, Word& h,
           Word k_plus_w) {
  const Word sum1 = std::rotr(e, 14) ^ std::rotr(e, 18) ^ std::rotr(e, 41);
  const Word choice = g ^ (e & (f ^ g));
  const Word sum0 = std::rotr(a, 28) ^ std::rotr(a, 34) ^ std::rotr(a, 39);
  const Word majority = (a & b) | (c & (a | b));
  const Word t1 = h + sum1 + choice + k_plus_w;
  d += t1;
  h = t1 + sum0 + majority;
}

}  // namespace

void sha512_blocks_portable(Word* state, const std::uint8_t* blocks,
                            std::size_t count) {
  for (; count > 0; --count, blocks += 128) {
    Word w[16];
    for (int t = 0; t < 16; ++t) w[t] = big_endian(blocks + 8 * t);

    Word a = state[0], b = state[1], c = state[2], d = state[3];
    Word e = state[4], f = state[5], g = state[6], h = state[7];
    const auto word = [&w](int t) {
      if (t >= 16) w[t & 15] = next_word(w, t);
      return kSha512Rounds[t] + w[t & 15];
    };
    for (int t = 0; t < 80; t += 8) {
      round(a, b, c, d, e, f, g, h, word(t));
      round(h, a, b, c, d, e, f, g, word(t + 1));
      round(g, h, a, b, c, d, e, f, word(t + 2));
      round(f, g, h, a, b, c, d, e, word(t + 3));
      round(e, f, g, h, a, b, c, d, word(t + 4));
      round(d, e, f, g, h, a, b, c, word(t + 5));
      round(c, d, e, f, g, h, a, b, word(t + 6));
      round(b, c, d, e, f, g, h, a, word(t + 7));
    }
    const Word result[8] = {a, b, c, d, e, f, g, h};
    for (int i = 0; i < 8; ++i) state[i] += result[i];
  }
}

}  // namespace tova_fw_builder
