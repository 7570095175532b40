// SHA-256's compression function with the crypto instructions of 64-bit Arm.
// Built with those instructions switched on for this file alone.
#if defined(__aarch64__)

#include <arm_neon.h>

#include "crypto/internal/sha_blocks.h"
#include "crypto/internal/sha_constants.h"

namespace tova_fw_builder {

namespace {

using Words = uint32x4_t;

struct State {
  Words abcd;
  Words efgh;
};

Words load_words(const std::uint8_t* bytes) {
  return vreinterpretq_u32_u8(vrev32q_u8(vld1q_u8(bytes)));
}

// The rounds t to t + 3, whose words of the message schedule are in w.
void four_rounds(State& s, Words w, int t) {
  const Words kw = vaddq_u32(w, vld1q_u32(kSha256Rounds.data() + t));
  // Both instructions want the words from ahead of the four rounds.
  const Words abcd = s.abcd;
  s.abcd = vsha256hq_u32(s.abcd, s.efgh, kw);
  s.efgh = vsha256h2q_u32(s.efgh, abcd, kw);
}

// The next four words of the schedule from the last sixteen, oldest first.
Words next_words(Words w0, Words w1, Words w2, Words w3) {
  return vsha256su1q_u32(vsha256su0q_u32(w0, w1), w2, w3);
}

void take_block(State& s, const std::uint8_t* block) {
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
  s.abcd = vaddq_u32(s.abcd, before.abcd);
  s.efgh = vaddq_u32(s.efgh, before.efgh);
}

}  // namespace

void sha256_blocks_arm(std::uint32_t* state, const std::uint8_t* blocks,
                       std::size_t count) {
  State s = {vld1q_u32(state), vld1q_u32(state + 4)};
  for (; count > 0; --count, blocks += 64) take_block(s, blocks);
  vst1q_u32(state, s.abcd);
  vst1q_u32(state + 4, s.efgh);
}

}  // namespace tova_fw_builder

#endif
