// crypto/internal/sha_round.h
// The rounds of SHA-256 and of the SHA-512 family, which differ in the width of
// their words and in the rotations alone. For the library's sources alone.
#pragma once

#include <bit>
#include <cstdint>

namespace tova_fw_builder {

// The functions below are inlined by force: the variants rely on the words
// staying in registers.

[[gnu::always_inline]] inline std::uint32_t sha_sum0(std::uint32_t a) {
  return std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22);
}
[[gnu::always_inline]] inline std::uint64_t sha_sum0(std::uint64_t a) {
  return std::rotr(a, 28) ^ std::rotr(a, 34) ^ std::rotr(a, 39);
}

[[gnu::always_inline]] inline std::uint32_t sha_sum1(std::uint32_t e) {
  return std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25);
}
[[gnu::always_inline]] inline std::uint64_t sha_sum1(std::uint64_t e) {
  return std::rotr(e, 14) ^ std::rotr(e, 18) ^ std::rotr(e, 41);
}

// One round. Instead of moving the eight words on, the caller turns their
// names by one place.
template <typename Word>
[[gnu::always_inline]] inline void sha_round(Word a, Word b, Word c, Word& d,
                                             Word e, Word f, Word g, Word& h,
                                             Word k_plus_w) {
  const Word sum1 = sha_sum1(e);
  const Word choice = g ^ (e & (f ^ g));
  const Word sum0 = sha_sum0(a);
  // a ^ b is the next round's b ^ c, and the compiler keeps it.
  const Word majority = b ^ ((a ^ b) & (b ^ c));
  const Word t1 = (h + k_plus_w) + (choice + sum1);
  d += t1;
  h = t1 + sum0 + majority;
}

// The eight words that the rounds of one block work on.
template <typename Word>
struct ShaWorking {
  Word a, b, c, d, e, f, g, h;
};

template <typename Word>
[[gnu::always_inline]] inline ShaWorking<Word> sha_working_copy(
    const Word* state) {
  return {state[0], state[1], state[2], state[3],
          state[4], state[5], state[6], state[7]};
}

template <typename Word>
[[gnu::always_inline]] inline void sha_add_to(Word* state,
                                              const ShaWorking<Word>& s) {
  const Word result[8] = {s.a, s.b, s.c, s.d, s.e, s.f, s.g, s.h};
  for (int i = 0; i < 8; ++i) state[i] += result[i];
}

}  // namespace tova_fw_builder
