// SHA-512's compression function for x86 with AVX2 and BMI2. The rounds leave
// the vector unit idle, so it computes the message schedule meanwhile, and of
// two blocks at once: the lower half of each register belongs to the first of
// them. The second block's rounds then find their schedule done.
#if defined(__x86_64__)

#include <immintrin.h>

#include "crypto/internal/sha_blocks.h"
#include "crypto/internal/sha_constants.h"
#include "crypto/internal/sha_round.h"

namespace tova_fw_builder {

namespace {

using Word = std::uint64_t;
using Words = __m256i;  // words t and t + 1 of the one block, then the other's

// The schedule with the round constants added: word t of block b stands at
// 4 * (t / 2) + 2 * b + t % 2.
using Schedule = Word[2 * 80];

[[gnu::target("avx2,bmi2"), gnu::always_inline]] inline Words load_words(
    const std::uint8_t* first, const std::uint8_t* second) {
  const __m256i big_endian = _mm256_broadcastsi128_si256(
      _mm_set_epi64x(0x08090a0b0c0d0e0f, 0x0001020304050607));
  return _mm256_shuffle_epi8(
      _mm256_loadu2_m128i(reinterpret_cast<const __m128i*>(second),
                          reinterpret_cast<const __m128i*>(first)),
      big_endian);
}

[[gnu::target("avx2,bmi2"), gnu::always_inline]] inline Words rotate(Words x,
                                                                     int bits) {
  return _mm256_or_si256(_mm256_srli_epi64(x, bits),
                         _mm256_slli_epi64(x, 64 - bits));
}

// One shuffle in place of two shifts and an or.
[[gnu::target("avx2,bmi2"), gnu::always_inline]] inline Words rotate_by_a_byte(
    Words x) {
  return _mm256_shuffle_epi8(x, _mm256_broadcastsi128_si256(_mm_set_epi64x(
                                    0x080f0e0d0c0b0a09, 0x0007060504030201)));
}

// Puts the words t and t + 1 of both blocks into the schedule.
[[gnu::target("avx2,bmi2"), gnu::always_inline]] inline void put_words(
    Schedule& schedule, int t, Words w) {
  const auto* k = reinterpret_cast<const __m128i*>(kSha512Rounds.data() + t);
  const Words k_plus_w =
      _mm256_add_epi64(w, _mm256_broadcastsi128_si256(_mm_load_si128(k)));
  _mm256_store_si256(reinterpret_cast<__m256i*>(schedule + 2 * t), k_plus_w);
}

// Of the last sixteen words in w[0..7], whose oldest are in w[i], replaces the
// oldest by the next words, which are the words t and t + 1.
[[gnu::target("avx2,bmi2"), gnu::always_inline]] inline void extend(
    Schedule& schedule, int t, Words* w, int i) {
  const Words w15 = _mm256_alignr_epi8(w[(i + 1) & 7], w[i], 8);
  const Words w7 = _mm256_alignr_epi8(w[(i + 5) & 7], w[(i + 4) & 7], 8);
  const Words w2 = w[(i + 7) & 7];
  const Words sigma0 =
      _mm256_xor_si256(_mm256_xor_si256(rotate(w15, 1), rotate_by_a_byte(w15)),
                       _mm256_srli_epi64(w15, 7));
  const Words sigma1 =
      _mm256_xor_si256(_mm256_xor_si256(rotate(w2, 19), rotate(w2, 61)),
                       _mm256_srli_epi64(w2, 6));
  w[i] = _mm256_add_epi64(_mm256_add_epi64(w[i], sigma0),
                          _mm256_add_epi64(w7, sigma1));
  put_words(schedule, t, w[i]);
}

[[gnu::always_inline]] inline void two_rounds(Word a, Word b, Word& c, Word& d,
                                              Word e, Word f, Word& g, Word& h,
                                              const Word* k_plus_w) {
  sha_round(a, b, c, d, e, f, g, h, k_plus_w[0]);
  sha_round(h, a, b, c, d, e, f, g, k_plus_w[1]);
}

[[gnu::target("avx2,bmi2"), gnu::always_inline]] inline void eight_rounds(
    ShaWorking<Word>& s, const Word* kw) {
  two_rounds(s.a, s.b, s.c, s.d, s.e, s.f, s.g, s.h, kw);
  two_rounds(s.g, s.h, s.a, s.b, s.c, s.d, s.e, s.f, kw + 4);
  two_rounds(s.e, s.f, s.g, s.h, s.a, s.b, s.c, s.d, kw + 8);
  two_rounds(s.c, s.d, s.e, s.f, s.g, s.h, s.a, s.b, kw + 12);
}

// Eight rounds from round t on, and the schedule from word t + 16 on. The
// oldest words are in w[i].
[[gnu::target("avx2,bmi2"), gnu::always_inline]] inline void
eight_rounds_and_words(ShaWorking<Word>& s, Schedule& schedule, int t, Words* w,
                       int i) {
  const Word* kw = schedule + 2 * t;
  two_rounds(s.a, s.b, s.c, s.d, s.e, s.f, s.g, s.h, kw);
  extend(schedule, t + 16, w, i);
  two_rounds(s.g, s.h, s.a, s.b, s.c, s.d, s.e, s.f, kw + 4);
  extend(schedule, t + 18, w, i + 1);
  two_rounds(s.e, s.f, s.g, s.h, s.a, s.b, s.c, s.d, kw + 8);
  extend(schedule, t + 20, w, i + 2);
  two_rounds(s.c, s.d, s.e, s.f, s.g, s.h, s.a, s.b, kw + 12);
  extend(schedule, t + 22, w, i + 3);
}

[[gnu::target("avx2,bmi2"), gnu::always_inline]] inline void take_two_blocks(
    Word* state, const std::uint8_t* blocks) {
  alignas(32) Schedule schedule;
  Words w[8];
  for (int i = 0; i < 8; ++i) {
    w[i] = load_words(blocks + 16 * i, blocks + 128 + 16 * i);
    put_words(schedule, 2 * i, w[i]);
  }
  ShaWorking<Word> s = sha_working_copy(state);
  for (int t = 0; t < 64; t += 16) {
    eight_rounds_and_words(s, schedule, t, w, 0);
    eight_rounds_and_words(s, schedule, t + 8, w, 4);
  }
  eight_rounds(s, schedule + 2 * 64);
  eight_rounds(s, schedule + 2 * 72);
  sha_add_to(state, s);

  s = sha_working_copy(state);
  // The second block's words stand two places behind those of the first.
  for (int t = 0; t < 80; t += 8) eight_rounds(s, schedule + 2 * t + 2);
  sha_add_to(state, s);
}

}  // namespace

[[gnu::target("avx2,bmi2")]] void sha512_blocks_avx2(std::uint64_t* state,
                                                     const std::uint8_t* blocks,
                                                     std::size_t count) {
  for (; count >= 2; count -= 2, blocks += 256) take_two_blocks(state, blocks);
  // A last block without a partner.
  sha512_blocks_portable(state, blocks, count);
}

}  // namespace tova_fw_builder

#endif
