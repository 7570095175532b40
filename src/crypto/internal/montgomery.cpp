// Montgomery arithmetic: what both variants share, and the portable variant.
// That one goes column by column: each column of the product is summed in three
// digits, so that nothing is stored before its sum is final.
#include "crypto/internal/montgomery.h"

#include <algorithm>

#include "crypto/internal/processor.h"

namespace tova_fw_builder {

namespace {

// What the lanes of the vector variant can take: twice as many products of 56
// bits as there are limbs must stay below 2^64.
constexpr std::size_t kMostVectorLimbs = 124;
constexpr std::int32_t kMostVectorBits = kVectorLimb * kMostVectorLimbs - 2;

// The vector variant takes four limbs at a time and wants R above 4 * N.
std::size_t vector_limbs(std::int32_t bits) {
  const auto limbs =
      static_cast<std::size_t>((bits + kVectorLimb + 1) / kVectorLimb);
  return (limbs + 3) / 4 * 4;
}

constexpr std::size_t kPadding = 4;  // limbs that vectors reach too far

// The sum of one column of products, of which there are at most 2^9.
struct Column {
  WideDigit low = 0;
  Digit high = 0;

  void add_product(Digit a, Digit b) {
    const WideDigit product = WideDigit{a} * b;
    low += product;
    // A sum below one of its terms has wrapped.
    high += low < product;
  }
  // Takes the lowest digit off and moves on to the next column.
  Digit shift() {
    const auto lowest = static_cast<Digit>(low);
    low = low >> 64 | WideDigit{high} << 64;
    high = 0;
    return lowest;
  }
};

Digit limb_mask(const Montgomery& n) { return ~Digit{0} >> (64 - n.limb_bits); }

// out = value - N if `overflow` (0 or 1) or value >= N, else value; `value`
// with its overflow is below 2 * N. The subtraction is always done.
void subtract_if_not_below(const Montgomery& n, Digit* out, const Digit* value,
                           Digit overflow) {
  Digit* difference = n.scratch;
  Digit borrow = 0;
  for (std::size_t i = 0; i < n.limbs; ++i) {
    const WideDigit d = WideDigit{value[i]} - n.modulus[i] - borrow;
    difference[i] = static_cast<Digit>(d) & limb_mask(n);
    borrow = static_cast<Digit>(d >> 64) & 1;
  }
  // Keep the value if there was nothing above it to borrow from.
  const Digit keep = ~mask_if_zero(borrow & ~overflow);
  for (std::size_t i = 0; i < n.limbs; ++i) {
    out[i] = (value[i] & keep) | (difference[i] & ~keep);
  }
}

// A multiple of N, the quotient, clears the low half of a * b, which makes the
// division by R exact. It is found limb by limb, each from a column's sum.
void multiply_portable(const Montgomery& n, Digit* out, const Digit* a,
                       const Digit* b) {
  const std::size_t limbs = n.limbs;
  Digit* quotient = n.scratch;
  Digit* result = n.scratch + limbs;
  Column column;
  for (std::size_t k = 0; k < limbs; ++k) {
    for (std::size_t i = 0; i < k; ++i) {
      column.add_product(a[i], b[k - i]);
      column.add_product(quotient[i], n.modulus[k - i]);
    }
    column.add_product(a[k], b[0]);
    quotient[k] = static_cast<Digit>(column.low) * n.negative_inverse;
    column.add_product(quotient[k], n.modulus[0]);
    column.shift();  // zero now, by the choice of the quotient
  }
  for (std::size_t k = limbs; k < 2 * limbs; ++k) {
    for (std::size_t i = k - limbs + 1; i < limbs; ++i) {
      column.add_product(a[i], b[k - i]);
      column.add_product(quotient[i], n.modulus[k - i]);
    }
    result[k - limbs] = column.shift();
  }
  subtract_if_not_below(n, out, result, static_cast<Digit>(column.low));
}

// Cuts a number into limbs.
void unpack(const Montgomery& n, Digit* limbs, const Digit* number) {
  for (std::size_t i = n.limbs; i-- > 0;) {
    const std::size_t position = i * static_cast<std::size_t>(n.limb_bits);
    const std::size_t at = position / 64;
    const Digit low = at < n.digits ? number[at] : 0;
    const Digit high = at + 1 < n.digits ? number[at + 1] : 0;
    const WideDigit both = WideDigit{high} << 64 | low;
    limbs[i] = static_cast<Digit>(both >> position % 64) & limb_mask(n);
  }
}

// Puts the limbs of a number below N together.
void pack(const Montgomery& n, Digit* number, const Digit* limbs) {
  WideDigit bits = 0;
  std::int32_t count = 0;
  for (std::size_t i = 0, at = 0; at < n.digits; ++i) {
    bits |= WideDigit{i < n.limbs ? limbs[i] : 0} << count;
    count += n.limb_bits;
    if (count >= 64) {
      number[at++] = static_cast<Digit>(bits);
      bits >>= 64;
      count -= 64;
    }
  }
}

// x = 2 * x mod N
void double_modulo(const Montgomery& n, Digit* x) {
  Digit carry = 0;
  for (std::size_t i = 0; i < n.limbs; ++i) {
    const Digit limb = x[i];
    x[i] = (limb << 1 | carry) & limb_mask(n);
    carry = limb >> (n.limb_bits - 1);
  }
  subtract_if_not_below(n, x, x, carry);
}

// From the highest power of 2 that isn't above N, doubling gives R mod N, which
// is 1 in Montgomery form, and then a power of 2 in that form that some
// squarings turn into R, so R * R.
void find_r_squared(const Montgomery& n, std::int32_t bits) {
  const std::size_t r_bits = n.limbs * static_cast<std::size_t>(n.limb_bits);
  const int squarings = std::countr_zero(r_bits);
  const auto highest = static_cast<std::size_t>(bits - 1);
  Digit* power = n.r_squared;
  std::fill_n(power, n.limbs, 0);
  const auto limb_bits = static_cast<std::size_t>(n.limb_bits);
  power[highest / limb_bits] = Digit{1} << highest % limb_bits;
  for (std::size_t i = highest; i < r_bits + (r_bits >> squarings); ++i) {
    double_modulo(n, power);
  }
  for (int i = 0; i < squarings; ++i) {
    montgomery_multiply(n, power, power, power);
  }
}

}  // namespace

std::int32_t choose_limb(std::int32_t bits) {
  return bits <= kMostVectorBits && has_avx2_and_bmi2() ? kVectorLimb
                                                        : kPortableLimb;
}

std::size_t montgomery_storage(std::int32_t bits) {
  // The vector variant has the more limbs: modulus, R^2 and three for scratch.
  return 5 * vector_limbs(bits) + 2 * kPadding;
}

Montgomery prepare_montgomery(const Digit* modulus, std::int32_t bits,
                              std::int32_t limb_bits, Digit* storage) {
  Montgomery n = {};
  n.digits = digits_for_bits(bits);
  n.limb_bits = limb_bits;
  n.limbs = limb_bits == kVectorLimb ? vector_limbs(bits) : n.digits;
  n.modulus = storage;
  n.r_squared = n.modulus + n.limbs + kPadding;
  n.scratch = n.r_squared + n.limbs;
  unpack(n, n.modulus, modulus);
  std::fill_n(n.modulus + n.limbs, kPadding, 0);

  // Newton's iteration doubles the number of right bits; N * N is 1 modulo 8,
  // so N itself is right in three.
  Digit inverse = modulus[0];
  for (int i = 0; i < 5; ++i) inverse *= 2 - modulus[0] * inverse;
  n.negative_inverse = 0 - inverse;
  find_r_squared(n, bits);
  return n;
}

void enter_montgomery(const Montgomery& n, Digit* out, const Digit* number) {
  unpack(n, out, number);
  montgomery_multiply(n, out, out, n.r_squared);
}

void leave_montgomery(const Montgomery& n, Digit* out, const Digit* value,
                      Digit* work) {
  // Times 1 is a division by R. What the vector variant yields may not be below
  // N yet, hence the subtraction.
  std::fill_n(work, n.limbs, 0);
  work[0] = 1;
  montgomery_multiply(n, work, value, work);
  subtract_if_not_below(n, work, work, 0);
  pack(n, out, work);
}

void montgomery_multiply(const Montgomery& n, Digit* out, const Digit* a,
                         const Digit* b) {
#if defined(__x86_64__)
  if (n.limb_bits == kVectorLimb) {
    montgomery_multiply_avx2(n, out, a, b);
    return;
  }
#endif
  multiply_portable(n, out, a, b);
}

}  // namespace tova_fw_builder
