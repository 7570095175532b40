// SHA-256's compression function with the SHA instructions of x86. These keep
// the eight state words in two registers, a,b,e,f and c,d,g,h from the highest
// lane down, and take two rounds at a time.
#if defined(__x86_64__)

#include <immintrin.h>

#include "crypto/internal/sha_blocks.h"
#include "crypto/internal/sha_constants.h"

namespace tova_fw_builder {

namespace {

using Words = __m128i;  // four 32-bit words, the first in the lowest lane

struct State {
  Words abef;
  Words cdgh;
};

[[gnu::target("sha,sse4.1")]] Words load_words(const std::uint8_t* bytes) {
  const __m128i big_endian =
      _mm_set_epi64x(0x0c0d0e0f08090a0b, 0x0405060700010203);
  return _mm_shuffle_epi8(
      _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes)), big_endian);
}

// The rounds t to t + 3, whose words of the message schedule are in w.
[[gnu::target("sha,sse4.1")]] void four_rounds(State& s, Words w, int t) {
  const auto* k = reinterpret_cast<const __m128i*>(kSha256Rounds.data() + t);
  const Words kw = _mm_add_epi32(w, _mm_load_si128(k));
  s.cdgh = _mm_sha256rnds2_epu32(s.cdgh, s.abef, kw);
  // After two rounds the halves have changed places. The instruction takes the
  // two words that it adds from the lower lanes.
  s.abef = _mm_sha256rnds2_epu32(s.abef, s.cdgh, _mm_shuffle_epi32(kw, 0x0E));
}

// The next four words of the schedule from the last sixteen, oldest first.
[[gnu::target("sha,sse4.1")]] Words next_words(Words w0, Words w1, Words w2,
                                               Words w3) {
  const Words seven_back = _mm_alignr_epi8(w3, w2, 4);
  const Words sum = _mm_add_epi32(_mm_sha256msg1_epu32(w0, w1), seven_back);
  return _mm_sha256msg2_epu32(sum, w3);
}

[[gnu::target("sha,sse4.1")]] void take_block(State& s,
                                              const std::uint8_t* block) {
  const State before = s;
  Words w0 = load_words(block);
  Words w1 = load_words(block + 16);
  Words w2 = load_words(block + 32);
  Words w3 = load_words(block + 48);
  for (int t = 0; t < 48; t += 16) {
    four_rounds(s, w0, t);
    w0 = next_words(w0, w1, w2, w3);
    four_rounds(s, w1, t + 4);
    w1 = next_words(w1, w2, w3, w0);
    four_rounds(s, w2, t + 8);
    w2 = next_words(w2, w3, w0, w1);
    four_rounds(s, w3, t + 12);
    w3 = next_words(w3, w0, w1, w2);
  }
  four_rounds(s, w0, 48);
  four_rounds(s, w1, 52);
  four_rounds(s, w2, 56);
  four_rounds(s, w3, 60);
  s.abef = _mm_add_epi32(s.abef, before.abef);
  s.cdgh = _mm_add_epi32(s.cdgh, before.cdgh);
}

}  // namespace

[[gnu::target("sha,sse4.1")]] void sha256_blocks_x86(std::uint32_t* state,
                                                     const std::uint8_t* blocks,
                                                     std::size_t count) {
  auto* memory = reinterpret_cast<__m128i*>(state);
  // From the order of the words in memory to that of the instruction.
  const __m128i cdab = _mm_shuffle_epi32(_mm_loadu_si128(memory), 0xB1);
  const __m128i efgh = _mm_shuffle_epi32(_mm_loadu_si128(memory + 1), 0x1B);
  State s = {_mm_alignr_epi8(cdab, efgh, 8), _mm_blend_epi16(efgh, cdab, 0xF0)};
  for (; count > 0; --count, blocks += 64) take_block(s, blocks);
  const __m128i feba = _mm_shuffle_epi32(s.abef, 0x1B);
  const __m128i dchg = _mm_shuffle_epi32(s.cdgh, 0xB1);
  _mm_storeu_si128(memory, _mm_blend_epi16(feba, dchg, 0xF0));
  _mm_storeu_si128(memory + 1, _mm_alignr_epi8(dchg, feba, 8));
}

}  // namespace tova_fw_builder

#endif
