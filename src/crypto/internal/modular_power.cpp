// Powers modulo N. What secret_power leaks is the exponent's size in bits: it
// picks the window and the number of steps.
#include "crypto/internal/modular_power.h"

#include <algorithm>

namespace tova_fw_builder {

namespace {

bool bit_at(const Digit* digits, std::int32_t position) {
  return (digits[position / 64] >> (position % 64) & 1) != 0;
}

// A larger table of powers costs more to fill and saves a product for each of
// its fewer windows, so it pays off for longer exponents.
std::int32_t window_for_bits(std::int32_t bits) {
  if (bits < 42) return 1;
  if (bits < 179) return 2;
  if (bits < 718) return 3;
  if (bits < 2667) return 4;
  if (bits < 4097) return 5;
  return 6;
}

// The `window` bits from `position` up.
Digit window_at(const Digit* digits, std::int32_t position,
                std::int32_t window) {
  const Digit* digit = digits + position / 64;
  const std::int32_t shift = position % 64;
  // In two shifts, since one by 64 is undefined.
  const Digit upper = digit[1] << 1 << (63 - shift);
  return (digit[0] >> shift | upper) & ((Digit{1} << window) - 1);
}

// The powers base^0, base^1... Limb j of entry i stands at
// table[j * entries + i], and reading an entry reads the whole table, so that
// no address depends on the index.
struct PowerTable {
  Digit* table;
  std::size_t entries;
  std::size_t limbs;
  Digit* masks;  // one for each entry

  void put(std::size_t index, const Digit* entry) const {
    for (std::size_t j = 0; j < limbs; ++j) {
      table[j * entries + index] = entry[j];
    }
  }
  void gather(Digit index, Digit* entry) const {
    for (std::size_t i = 0; i < entries; ++i) {
      masks[i] = mask_if_zero(i ^ index);
    }
    for (std::size_t j = 0; j < limbs; ++j) {
      const Digit* candidates = table + j * entries;
      Digit limb = 0;
      for (std::size_t i = 0; i < entries; ++i) {
        limb |= candidates[i] & masks[i];
      }
      entry[j] = limb;
    }
  }
};

// Arithmetic by shifting and subtracting, which serves for any N.
class DividedModulus {
 public:
  DividedModulus(const Digit* modulus, std::size_t digits)
      : modulus_(modulus), digits_(digits) {}

  // out = a * b mod N, one bit of a at a time; `out` is none of them.
  void multiply(Digit* out, const Digit* a, const Digit* b) const {
    std::fill_n(out, digits_, 0);
    for (auto i = static_cast<std::int32_t>(64 * digits_); i-- > 0;) {
      add(out, out);
      if (bit_at(a, i)) add(out, b);
    }
  }

 private:
  void add(Digit* x, const Digit* addend) const {
    Digit carry = 0;
    for (std::size_t i = 0; i < digits_; ++i) {
      const WideDigit sum = WideDigit{x[i]} + addend[i] + carry;
      x[i] = static_cast<Digit>(sum);
      carry = static_cast<Digit>(sum >> 64);
    }
    // Both numbers were below N, so one subtraction is enough.
    if (carry == 0 && is_below(x, modulus_, digits_)) return;
    Digit borrow = 0;
    for (std::size_t i = 0; i < digits_; ++i) {
      const WideDigit d = WideDigit{x[i]} - modulus_[i] - borrow;
      x[i] = static_cast<Digit>(d);
      borrow = static_cast<Digit>(d >> 64) & 1;
    }
  }

  const Digit* modulus_;
  std::size_t digits_;
};

}  // namespace

std::size_t public_power_work(const Montgomery& n) { return 2 * n.limbs; }

void public_power(const Montgomery& n, Digit* out, const Digit* base,
                  const Digit* exponent, std::int32_t bits, Digit* work) {
  Digit* factor = work;
  Digit* power = factor + n.limbs;
  enter_montgomery(n, factor, base);
  // The topmost bit is done by this.
  std::copy_n(factor, n.limbs, power);
  for (std::int32_t i = bits - 1; i-- > 0;) {
    montgomery_multiply(n, power, power, power);
    // Branches on the exponent, which everybody knows.
    if (bit_at(exponent, i)) montgomery_multiply(n, power, power, factor);
  }
  leave_montgomery(n, out, power, factor);
}

std::size_t secret_power_work(const Montgomery& n, std::int32_t bits) {
  const std::size_t entries = std::size_t{1} << window_for_bits(bits);
  return (2 + entries) * n.limbs + entries;
}

void secret_power(const Montgomery& n, Digit* out, const Digit* base,
                  const Digit* exponent, std::int32_t bits, Digit* work) {
  const std::int32_t window = window_for_bits(bits);
  Digit* factor = work;
  Digit* power = factor + n.limbs;
  const std::size_t entries = std::size_t{1} << window;
  Digit* masks = power + n.limbs;
  const PowerTable table = {masks + entries, entries, n.limbs, masks};

  std::fill_n(power, n.limbs, 0);
  power[0] = 1;
  montgomery_multiply(n, power, power, n.r_squared);  // 1 in Montgomery form
  enter_montgomery(n, factor, base);
  for (std::size_t i = 0; i < table.entries; ++i) {
    table.put(i, power);
    montgomery_multiply(n, power, power, factor);
  }

  // From the topmost window, which may be partial and reach above the exponent.
  std::int32_t position = (bits - 1) / window * window;
  table.gather(window_at(exponent, position, window), power);
  while (position > 0) {
    position -= window;
    for (std::int32_t i = 0; i < window; ++i) {
      montgomery_multiply(n, power, power, power);
    }
    // A window of zeros is multiplied by 1 all the same: a step left out would
    // show in the time.
    table.gather(window_at(exponent, position, window), factor);
    montgomery_multiply(n, power, power, factor);
  }
  leave_montgomery(n, out, power, factor);
}

std::size_t divided_power_work(std::size_t digits) { return digits; }

void divided_power(const Digit* modulus, std::size_t digits, Digit* out,
                   const Digit* base, const Digit* exponent, std::int32_t bits,
                   Digit* work) {
  const DividedModulus n(modulus, digits);
  std::copy_n(base, digits, out);
  for (std::int32_t i = bits - 1; i-- > 0;) {
    n.multiply(work, out, out);
    if (bit_at(exponent, i)) {
      n.multiply(out, work, base);
    } else {
      std::copy_n(work, digits, out);
    }
  }
}

}  // namespace tova_fw_builder
