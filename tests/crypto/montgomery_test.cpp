#include "crypto/internal/montgomery.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "crypto/internal/modular_power.h"
#include "crypto/internal/processor.h"

namespace tova_fw_builder {
namespace {

using Digits = std::vector<Digit>;

// base ^ exponent mod n, with limbs of one kind.
Digits power_in(std::int32_t limb, const Digits& modulus, std::int32_t bits,
                const Digits& base, const Digits& exponent) {
  Digits storage(montgomery_storage(bits), ~Digit{0});
  const Montgomery n =
      prepare_montgomery(modulus.data(), bits, limb, storage.data());
  Digits work(secret_power_work(n, 128), ~Digit{0});
  Digits result(modulus.size());
  secret_power(n, result.data(), base.data(), exponent.data(), 128,
               work.data());
  return result;
}

// Random moduli, and those whose limbs are all ones, of every number of bits
// around the places where a limb or a vector is added, or where digits and
// limbs end together (each 448 bits).
TEST(Montgomery, BothVariantsAgree) {
  if (!has_avx2_and_bmi2()) GTEST_SKIP() << "no AVX2: there is one variant";
  std::mt19937_64 random(2);
  const Digits exponent = {random(), random() | Digit{1} << 63, 0};
  for (const int middle :
       {10, 60, 110, 128, 448, 700, 896, 1344, 1792, 2045, 3440}) {
    for (std::int32_t bits = middle - 8; bits <= middle + 30; ++bits) {
      Digits modulus(digits_for_bits(bits));
      Digits base(modulus.size());
      for (const bool ones : {false, true}) {
        for (std::size_t i = 0; i < modulus.size(); ++i) {
          modulus[i] = ones ? ~Digit{0} : random();
          base[i] = ones ? ~Digit{0} : random();
        }
        const std::int32_t spare = 63 - (bits - 1) % 64;
        modulus.back() = (modulus.back() | Digit{1} << 63) >> spare;
        modulus[0] |= 1;
        base.back() = ones ? base.back() >> spare : modulus.back() / 3;
        base[0] &= ~Digit{1};
        EXPECT_EQ(power_in(kPortableLimb, modulus, bits, base, exponent),
                  power_in(kVectorLimb, modulus, bits, base, exponent))
            << bits;
      }
    }
  }
}

}  // namespace
}  // namespace tova_fw_builder
