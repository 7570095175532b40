// Montgomery multiplication, column by column: each column of the product is
// summed in three digits, so that nothing is stored before its sum is final.
#include "crypto/montgomery.h"

#include <algorithm>

namespace tova_fw_builder {

namespace {

// The sum of one column of products. A column has at most 2^9 products of
// below 2^128.
struct Column {
  WideDigit low = 0;
  Digit high = 0;

  void add_product(Digit a, Digit b) {
    const WideDigit product = WideDigit{a} * b;
    low += product;
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

// out = value - N if `overflow` (0 or 1) or value >= N, else value; `value`
// with its overflow is below 2 * N. The subtraction is always done.
void subtract_if_not_below(const Montgomery& n, Digit* out, const Digit* value,
                           Digit overflow) {
  Digit* difference = n.scratch;
  Digit borrow = 0;
  for (std::size_t i = 0; i < n.digits; ++i) {
    const WideDigit d = WideDigit{value[i]} - n.modulus[i] - borrow;
    difference[i] = static_cast<Digit>(d);
    borrow = static_cast<Digit>(d >> 64) & 1;
  }
  // Keep the value if there was nothing above it to borrow from.
  const Digit keep = ~mask_if_zero(borrow & ~overflow);
  for (std::size_t i = 0; i < n.digits; ++i) {
    out[i] = (value[i] & keep) | (difference[i] & ~keep);
  }
}

// x = 2 * x mod N
void double_modulo(const Montgomery& n, Digit* x) {
  Digit carry = 0;
  for (std::size_t i = 0; i < n.digits; ++i) {
    const Digit digit = x[i];
    x[i] = digit << 1 | carry;
    carry = digit >> 63;
  }
  subtract_if_not_below(n, x, x, carry);
}

}  // namespace

void montgomery_multiply(const Montgomery& n, Digit* out, const Digit* a,
                         const Digit* b) {
  const std::size_t digits = n.digits;
  Digit* quotient = n.scratch;
  Digit* result = n.scratch + digits;
  Column column;
  for (std::size_t k = 0; k < digits; ++k) {
    for (std::size_t i = 0; i < k; ++i) {
      column.add_product(a[i], b[k - i]);
      column.add_product(quotient[i], n.modulus[k - i]);
    }
    column.add_product(a[k], b[0]);
    quotient[k] = static_cast<Digit>(column.low) * n.negative_inverse;
    column.add_product(quotient[k], n.modulus[0]);
    column.shift();  // zero now, by the choice of the quotient
  }
  for (std::size_t k = digits; k < 2 * digits; ++k) {
    for (std::size_t i = k - digits + 1; i < digits; ++i) {
      column.add_product(a[i], b[k - i]);
      column.add_product(quotient[i], n.modulus[k - i]);
    }
    result[k - digits] = column.shift();
  }
  subtract_if_not_below(n, out, result, static_cast<Digit>(column.low));
}

void prepare_montgomery(Montgomery& n) {
  // Newton's iteration doubles the number of right bits; N * N is 1 modulo 8,
  // so N itself is right in three.
  Digit inverse = n.modulus[0];
  for (int i = 0; i < 5; ++i) inverse *= 2 - n.modulus[0] * inverse;
  n.negative_inverse = 0 - inverse;

  // R mod N, from the highest power of 2 that isn't above N, by doubling; as
  // many doublings as N has digits more give 2^digits in Montgomery form, and
  // six squarings of that 2^(64 * digits) = R.
  const auto bits = static_cast<std::size_t>(bit_size(n.modulus, n.digits));
  Digit* power = n.r_squared;
  std::fill_n(power, n.digits, 0);
  power[(bits - 1) / 64] = Digit{1} << (bits - 1) % 64;
  for (std::size_t i = bits - 1; i < 65 * n.digits; ++i) {
    double_modulo(n, power);
  }
  for (int i = 0; i < 6; ++i) {
    montgomery_multiply(n, power, power, power);
  }
}

}  // namespace tova_fw_builder
