// crypto/sha512_round.h
// The rounds of SHA-512, which all its builds share. For the library's sources
// alone.
#pragma once

#include <bit>
#include <cstdint>

namespace tova_fw_builder {

using Sha512Word = std::uint64_t;

// The eight words that the rounds of one block work on.
struct Sha512Working {
  Sha512Word a, b, c, d, e, f, g, h;
};

[[gnu::always_inline]] inline Sha512Working sha512_working_copy(
    const Sha512Word* state) {
  return {state[0], state[1], state[2], state[3],
          state[4], state[5], state[6], state[7]};
}

[[gnu::always_inline]] inline void sha512_add_to(Sha512Word* state,
                                                 const Sha512Working& s) {
  const Sha512Word result[8] = {s.a, s.b, s.c, s.d, s.e, s.f, s.g, s.h};
  for (int i = 0; i < 8; ++i) state[i] += result[i];
}

// One round. Instead of moving the eight words on, the caller turns their
// names by one place. Inlined by force: the builds rely on the words staying
// in registers.
[[gnu::always_inline]] inline void sha512_round(Sha512Word a, Sha512Word b,
                                                Sha512Word c, Sha512Word& d,
                                                Sha512Word e, Sha512Word f,
                                                Sha512Word g, Sha512Word& h,
                                                Sha512Word k_plus_w) {
  const Sha512Word sum1 =
      std::rotr(e, 14) ^ std::rotr(e, 18) ^ std::rotr(e, 41);
  const Sha512Word choice = g ^ (e & (f ^ g));
  const Sha512Word sum0 =
      std::rotr(a, 28) ^ std::rotr(a, 34) ^ std::rotr(a, 39);
  // a ^ b is the next round's b ^ c, and the compiler keeps it.
  const Sha512Word majority = b ^ ((a ^ b) & (b ^ c));
  const Sha512Word t1 = (h + k_plus_w) + (choice + sum1);
  d += t1;
  h = t1 + sum0 + majority;
}

}  // namespace tova_fw_builder
