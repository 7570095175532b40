// Montgomery multiplication for x86 with AVX2, four rows of the product at a
// time. Its limbs of 28 bits stand in lanes of 64 bits, where the sums of
// products grow without carries until the end. R is above 4 * N, so that
// results below 2 * N come of operands below 2 * N and no subtraction is
// needed.
#if defined(__x86_64__)

#include <immintrin.h>

#include <algorithm>

#include "crypto/internal/montgomery.h"

namespace tova_fw_builder {

namespace {

constexpr Digit kLimbMask = (Digit{1} << kVectorLimb) - 1;

[[gnu::target("avx2"), gnu::always_inline]] inline __m256i load(
    const Digit* limbs) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(limbs));
}

// Adds a limb, in all lanes, times four limbs. Of each lane the lower half
// counts.
[[gnu::target("avx2"), gnu::always_inline]] inline __m256i add_products(
    __m256i sum, __m256i limb, __m256i limbs) {
  return _mm256_add_epi64(sum, _mm256_mul_epu32(limb, limbs));
}

[[gnu::target("avx2"), gnu::always_inline]] inline __m256i in_all_lanes(
    Digit limb) {
  // A limb fits in 32 bits, and the upper half of a lane is never looked at.
  return _mm256_set1_epi32(static_cast<int>(limb));
}

// Finds the multiple of N, q[0..3], that clears the lowest four limbs of sum
// once a[0..3] * b is added too. Takes what was carried into these limbs and
// yields what they carry on: it stays out of the array, since a vector that is
// loaded just behind a store of one of its lanes has to wait for it.
Digit clear_four_limbs(const Montgomery& n, const Digit* sum, const Digit* a,
                       const Digit* b, Digit* q, Digit carry) {
  for (std::size_t i = 0; i < 4; ++i) {
    Digit limb = sum[i] + carry;
    for (std::size_t j = 0; j <= i; ++j) limb += a[j] * b[i - j];
    for (std::size_t j = 0; j < i; ++j) limb += q[j] * n.modulus[i - j];
    // The inverse modulo 2^64 is one modulo 2^28, too.
    q[i] = limb * n.negative_inverse & kLimbMask;
    carry = (limb + q[i] * n.modulus[0]) >> kVectorLimb;
  }
  return carry;
}

// Adds a[0..3] * b + q[0..3] * N to sum, except for the lowest four limbs. Both
// b and N are read four limbs beyond their end.
[[gnu::target("avx2")]] void add_four_rows(const Montgomery& n, Digit* sum,
                                           const Digit* a, const Digit* b,
                                           const Digit* q) {
  const __m256i a0 = in_all_lanes(a[0]), a1 = in_all_lanes(a[1]);
  const __m256i a2 = in_all_lanes(a[2]), a3 = in_all_lanes(a[3]);
  const __m256i q0 = in_all_lanes(q[0]), q1 = in_all_lanes(q[1]);
  const __m256i q2 = in_all_lanes(q[2]), q3 = in_all_lanes(q[3]);
  // The rows of b are moved by one limb each. Shuffles make them of two loads
  // where N takes four: loads and shuffles are then about equally busy.
  __m256i b_before = load(b);
  for (std::size_t i = 4; i < n.limbs + 4; i += 4) {
    const __m256i b0 = load(b + i);
    const __m256i b2 = _mm256_permute2x128_si256(b_before, b0, 0x21);
    const __m256i b1 = _mm256_alignr_epi8(b0, b2, 8);
    const __m256i b3 = _mm256_alignr_epi8(b2, b_before, 8);
    b_before = b0;
    __m256i a_sum = _mm256_mul_epu32(a0, b0);
    a_sum = add_products(a_sum, a1, b1);
    a_sum = add_products(a_sum, a2, b2);
    a_sum = add_products(a_sum, a3, b3);

    const Digit* m = n.modulus + i;
    __m256i q_sum = load(sum + i);
    q_sum = add_products(q_sum, q0, load(m));
    q_sum = add_products(q_sum, q1, load(m - 1));
    q_sum = add_products(q_sum, q2, load(m - 2));
    q_sum = add_products(q_sum, q3, load(m - 3));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(sum + i),
                        _mm256_add_epi64(a_sum, q_sum));
  }
}

}  // namespace

void montgomery_multiply_avx2(const Montgomery& n, Digit* out, const Digit* a,
                              const Digit* b) {
  Digit* sum = n.scratch;
  Digit* padded_b = sum + 2 * n.limbs;
  std::fill_n(sum, 2 * n.limbs, 0);
  std::fill_n(std::copy_n(b, n.limbs, padded_b), 4, 0);
  Digit carry = 0;
  for (std::size_t i = 0; i < n.limbs; i += 4) {
    Digit q[4];
    carry = clear_four_limbs(n, sum + i, a + i, padded_b, q, carry);
    add_four_rows(n, sum + i, a + i, padded_b, q);
  }
  // The one place where carries go on through all limbs; no step of it, as of
  // all above, depends on what the limbs hold.
  for (std::size_t i = 0; i < n.limbs; ++i) {
    carry += sum[n.limbs + i];
    out[i] = carry & kLimbMask;
    carry >>= kVectorLimb;
  }
}

}  // namespace tova_fw_builder

#endif
