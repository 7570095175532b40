#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <random>
#include <string>
#include <vector>

#include "crypto/rsa_sample.h"
#include "crypto/secret_buffer.h"
#include "crypto/zels_bignum.h"
#include "crypto/zels_rsa.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

using Bytes = std::vector<std::uint8_t>;

SecretBuffer number(const std::string& hex, std::size_t length) {
  const Bytes bytes = little_endian(hex, length);
  return MakeBigNum(static_cast<std::int32_t>(length), bytes.data());
}

// All of the number's room of `length` bytes.
Bytes value_of(const SecretBuffer& big_num, std::size_t length) {
  const std::uint64_t* digits = nullptr;
  EXPECT_EQ(zelStsNoErr, zelsRef_BN(nullptr, nullptr, &digits, big_num.data()));
  Bytes bytes;
  for (std::size_t i = 0; i < length; ++i) {
    bytes.push_back(static_cast<std::uint8_t>(digits[i / 8] >> i % 8 * 8));
  }
  return bytes;
}

// Public and private operation have the same signatures.
struct Operation {
  decltype(&zelsRSA_GetSizePublicKey) get_size;
  decltype(&zelsRSA_InitPublicKey) init;
  decltype(&zelsRSA_SetPublicKey) set;
  decltype(&zelsRSA_GetBufferSizePublicKey) get_buffer_size;
  decltype(&zelsRSAEncrypt) run;
};

constexpr Operation kPublic = {zelsRSA_GetSizePublicKey, zelsRSA_InitPublicKey,
                               zelsRSA_SetPublicKey,
                               zelsRSA_GetBufferSizePublicKey, zelsRSAEncrypt};
constexpr Operation kPrivate = {
    zelsRSA_GetSizePrivateKey, zelsRSA_InitPrivateKey, zelsRSA_SetPrivateKey,
    zelsRSA_GetBufferSizePrivateKey, zelsRSADecrypt};

SecretBuffer empty_key(const Operation& rsa, std::int32_t bits) {
  std::int32_t size = 0;
  EXPECT_EQ(zelStsNoErr, rsa.get_size(bits, bits, &size));
  SecretBuffer key(static_cast<std::size_t>(size));
  EXPECT_EQ(zelStsNoErr, rsa.init(bits, bits, key.data(), size));
  return key;
}

// x ^ e mod n in numbers of `length` bytes; empty if x isn't below n.
Bytes power(const Operation& rsa, const SecretBuffer& n, const SecretBuffer& e,
            const SecretBuffer& x, std::size_t length) {
  const SecretBuffer key =
      empty_key(rsa, static_cast<std::int32_t>(8 * length));
  rsa.set(n.data(), n.data(), key.data());  // of this one nothing may stay
  EXPECT_EQ(zelStsNoErr, rsa.set(n.data(), e.data(), key.data()));
  std::int32_t size = 0;
  EXPECT_EQ(zelStsNoErr, rsa.get_buffer_size(&size, key.data()));
  const SecretBuffer work(static_cast<std::size_t>(size));
  std::fill_n(work.data(), size, std::uint8_t{0xFF});
  const SecretBuffer result =
      MakeBigNum(static_cast<std::int32_t>(length), nullptr);
  if (rsa.run(x.data(), result.data(), key.data(), work.data()) !=
      zelStsNoErr) {
    return {};
  }
  return value_of(result, length);
}

// The first rows are worked out by hand, those of more than one digit with
// Python's pow(). Even moduli go another way, and there 2^10 mod 1024 shows
// that the result may be zero.
TEST(Rsa, PowersModuloOddAndEven) {
  const struct {
    const char* n;
    const char* e;
    const char* x;
    const char* result;
  } cases[] = {
      {"7", "5", "3", "5"},     // 243 = 34 * 7 + 5
      {"d", "3", "5", "8"},     // 125 = 9 * 13 + 8
      {"3e8", "a", "2", "18"},  // 1024 = 1000 + 24
      {"400", "a", "2", "0"},   //
      {"23", "1", "22", "22"},  //
      {"9", "2", "3", "0"},     //
      {"10000000000000001", "3", "2", "8"},
      {"23", "ffff", "0", "0"},  //
      {"1", "5", "0", "0"},      //
      {"2", "5", "1", "1"},      //
      {"111e20b8f6b0d549a", "11738f7d9", "10f21ddb66cad4a26",
       "49b202a807fe997c"},
      {"b9263059f28c105d1fb17c2390c192ce", "f29d0da9953f48f1a09f76b5a170b338",
       "658cda1495e60af593bd04cf0fd630f1", "2f47dd438881bbd812fcc6ce4751ef6b"},
      {"df557203301850c5a38fd547923a736994e3bf911a61dbe22e44158bae97ba94d0eda82"
       "f8f6d0559",
       "9e0f4205b4907a70c31012f037b64ce4228c38fb2918f135d2",
       "14f4733f3e7d1bfbc7a2ea20b2f14c942e05319acb5c74273f98e2774cbd87ad5c90a95"
       "87403e430",
       "6bfd72747f931f121850f2d66a3f60df70bc6c87dd3468e06b4a48b170c7bbc0eba4861"
       "ba67386d7"},
      {"9be4bcfc49b64a0872e6cc3ababced2057ee05cde00902c77ebff206867347214cdd205"
       "5930d6eae",
       "13c712bd4acefaecbd38",
       "a097c976bf46c697d2caf82eeeacbe226e875555790f82ec1d3fcff2a3af4d46b0a18e8"
       "830e07bc",
       "34f6ba6123fc545650f919cea533d35372f2d2c64153bd17b7b300cfa04a7e473853908"
       "f2bf79d14"},
  };
  for (const auto& c : cases) {
    for (const std::size_t length : {48u, 256u}) {  // more room than needed too
      for (const Operation& rsa : {kPublic, kPrivate}) {
        EXPECT_EQ(little_endian(c.result, length),
                  power(rsa, number(c.n, length), number(c.e, length),
                        number(c.x, length), length))
            << c.n;
      }
    }
  }
}

// A signature of OpenSSL's opens to the known block, and back.
TEST(Rsa, KnownKeyOf2048Bits) {
  const std::string block = "0001" + std::string(404, 'f') +
                            "003031300d060960864801650304020105000420" +
                            kSampleDigest;
  const SecretBuffer n = number(kSampleModulus, 256);
  EXPECT_EQ(little_endian(block, 256),
            power(kPublic, n, number("10001", 256),
                  number(kSampleSignature, 256), 256));
  EXPECT_EQ(little_endian(kSampleSignature, 256),
            power(kPrivate, n, number(kSamplePrivateExponent, 256),
                  number(block, 256), 256));
}

// Square-and-multiply against the windows, at both sides of each bit length
// where the window grows, and with exponents that are all ones or one bit.
TEST(Rsa, EveryWindowAgreesWithThePublicOperation) {
  std::mt19937 random(1);
  const auto random_hex = [&random](int bits, int kind) {
    std::string text(static_cast<std::size_t>(bits + 3) / 4, '0');
    if (kind == 0) {
      for (char& c : text) c = "0123456789abcdef"[random() % 16];
    } else if (kind == 1) {
      text.assign(text.size(), 'f');
    }
    const unsigned first = bits % 4 == 0 ? 8 : 1u << (bits % 4 - 1);
    text[0] = "0123456789abcdef"[kind == 1 ? 2 * first - 1 : first];
    return text;
  };
  for (const int bits :
       {1, 2, 41, 42, 63, 64, 65, 178, 179, 717, 718, 2666, 2667, 4096, 4097}) {
    // Moduli of 701 bits go to the vector variant where there is one.
    const std::size_t length = bits <= 2666 ? 336 : 520;
    const int size = bits <= 2666 ? 700 : 4096;
    const SecretBuffer n = number(random_hex(size, 0) + "1", length);
    const SecretBuffer x = number(random_hex(size, 0), length);
    for (const int kind : {0, 1, 2}) {
      const SecretBuffer e = number(random_hex(bits, kind), length);
      const Bytes expected = power(kPublic, n, e, x, length);
      EXPECT_FALSE(expected.empty());
      EXPECT_EQ(expected, power(kPrivate, n, e, x, length)) << bits;
    }
  }
}

// The result may replace the input, and its size counts no zero digits.
TEST(Rsa, ResultInPlaceOfTheInput) {
  const SecretBuffer key = empty_key(kPublic, 2048);
  const SecretBuffer n = number(kSampleModulus, 256);
  ASSERT_EQ(zelStsNoErr,
            kPublic.set(n.data(), number("3", 4).data(), key.data()));
  std::int32_t size = 0;
  ASSERT_EQ(zelStsNoErr, kPublic.get_buffer_size(&size, key.data()));
  const SecretBuffer work(static_cast<std::size_t>(size));
  const SecretBuffer x = number("100000000", 256);
  ASSERT_EQ(zelStsNoErr,
            zelsRSAEncrypt(x.data(), x.data(), key.data(), work.data()));
  EXPECT_EQ(little_endian("1000000000000000000000000", 256), value_of(x, 256));
  std::int32_t bits = 0;
  ASSERT_EQ(zelStsNoErr, zelsRef_BN(nullptr, &bits, nullptr, x.data()));
  EXPECT_EQ(97, bits);
}

// A status that is due, and the status that a call gave.
using Calls = std::initializer_list<std::pair<ZelStatus, ZelStatus>>;

void expect(const Calls& calls) {
  for (const auto& call : calls) {
    EXPECT_EQ(call.first, call.second) << "call " << &call - calls.begin();
  }
}

SecretBuffer minus_two() {
  SecretBuffer negative = MakeBigNum(8, nullptr);
  const std::uint32_t two = 2;
  zelsSet_BN(kNegative, 1, &two, negative.data());
  return negative;
}

// In these tests each call breaks one condition and, where it can, all those
// behind it.
TEST(Rsa, BoundsInTheirOrder) {
  for (const Operation& rsa : {kPublic, kPrivate}) {
    std::int32_t size = 0;
    expect({{zelStsNullPtrErr, rsa.get_size(0, 0, nullptr)},
            {zelStsNotSupportedModeErr, rsa.get_size(7, 0, &size)},
            {zelStsNotSupportedModeErr, rsa.get_size(16385, 0, &size)},
            {zelStsBadArgErr, rsa.get_size(8, 0, &size)},
            {zelStsBadArgErr, rsa.get_size(8, 9, &size)},
            {zelStsNoErr, rsa.get_size(16384, 16384, &size)},
            {zelStsNoErr, rsa.get_size(8, 1, &size)}});
    const SecretBuffer key(static_cast<std::size_t>(size));
    expect({{zelStsNullPtrErr, rsa.init(7, 0, nullptr, 0)},
            {zelStsNotSupportedModeErr, rsa.init(7, 0, key.data(), 0)},
            {zelStsBadArgErr, rsa.init(8, 0, key.data(), 0)},
            {zelStsMemAllocErr, rsa.init(8, 1, key.data(), size - 1)}});
    EXPECT_EQ(Bytes(8), Bytes(key.data(), key.data() + 8));  // untouched
    EXPECT_EQ(zelStsNoErr, rsa.init(8, 1, key.data(), size));
  }
}

TEST(Rsa, KeyValueConditionsInTheirOrder) {
  const SecretBuffer zero = MakeBigNum(8, nullptr);
  const SecretBuffer nine_bits = number("1ff", 8);
  const SecretBuffer good = number("ff", 8);
  const SecretBuffer negative = minus_two();
  const SecretBuffer other(100);
  for (const Operation& rsa : {kPublic, kPrivate}) {
    const SecretBuffer key = empty_key(rsa, 8);
    const auto set = [&](std::uint8_t* n, std::uint8_t* e) {
      return rsa.set(n, e, key.data());
    };
    std::int32_t size = 0;
    expect(
        {{zelStsNullPtrErr, rsa.set(nullptr, nullptr, nullptr)},
         {zelStsContextMatchErr, rsa.set(nullptr, nullptr, other.data())},
         {zelStsNullPtrErr, set(nullptr, nullptr)},
         {zelStsContextMatchErr, set(other.data(), nullptr)},
         {zelStsOutOfRangeErr, set(zero.data(), nullptr)},
         {zelStsOutOfRangeErr, set(negative.data(), nullptr)},
         {zelStsSizeErr, set(nine_bits.data(), nullptr)},
         {zelStsNullPtrErr, set(good.data(), nullptr)},
         {zelStsContextMatchErr, set(good.data(), other.data())},
         {zelStsOutOfRangeErr, set(good.data(), zero.data())},
         {zelStsOutOfRangeErr, set(good.data(), negative.data())},
         {zelStsSizeErr, set(good.data(), nine_bits.data())},
         // No key was stored.
         {zelStsIncompleteContextErr, rsa.get_buffer_size(&size, key.data())}});
  }
}

TEST(Rsa, OperationConditionsInTheirOrder) {
  const SecretBuffer other(100);
  const SecretBuffer n = number("1" + std::string(15, '0') + "1", 16);
  const SecretBuffer e = number("3", 16);
  // A digit more than N, and below it in all others.
  const SecretBuffer wide = number("1" + std::string(32, '0'), 24);
  const SecretBuffer narrow = MakeBigNum(8, nullptr);
  const SecretBuffer negative = minus_two();
  const SecretBuffer work(4096);
  for (const Operation& rsa : {kPublic, kPrivate}) {
    const SecretBuffer key = empty_key(rsa, 128);
    const SecretBuffer wrong =
        empty_key(rsa.run == zelsRSAEncrypt ? kPrivate : kPublic, 128);
    std::uint8_t* const none = nullptr;
    const auto run = [&](std::uint8_t* in, std::uint8_t* out) {
      return rsa.run(in, out, key.data(), work.data());
    };
    expect(
        {{zelStsNullPtrErr, rsa.get_buffer_size(nullptr, none)},
         {zelStsContextMatchErr, rsa.get_buffer_size(nullptr, wrong.data())},
         {zelStsIncompleteContextErr, rsa.get_buffer_size(nullptr, key.data())},
         {zelStsNullPtrErr, rsa.run(none, none, none, work.data())},
         {zelStsNullPtrErr, rsa.run(none, none, wrong.data(), none)},
         {zelStsContextMatchErr,
          rsa.run(none, none, wrong.data(), work.data())},
         {zelStsIncompleteContextErr, run(none, none)},
         {zelStsNoErr, rsa.set(n.data(), e.data(), key.data())},
         {zelStsNullPtrErr, rsa.get_buffer_size(nullptr, key.data())},
         {zelStsNullPtrErr, run(none, none)},
         {zelStsContextMatchErr, run(other.data(), none)},
         {zelStsOutOfRangeErr, run(negative.data(), none)},
         {zelStsOutOfRangeErr, run(n.data(), none)},
         {zelStsOutOfRangeErr, run(wide.data(), none)},
         {zelStsNullPtrErr, run(e.data(), none)},
         {zelStsContextMatchErr, run(e.data(), other.data())},
         {zelStsSizeErr, run(e.data(), narrow.data())}});
    EXPECT_EQ(Bytes(8), value_of(narrow, 8));
  }
}

TEST(BigNum, SizesAndConditionsInTheirOrder) {
  std::int32_t size = 0;
  const std::int32_t sizes[][2] = {
      {1, 71}, {2, 71}, {3, 87}, {64, 567}, {512, 4151}};
  for (const auto& [words, expected] : sizes) {
    EXPECT_EQ(zelStsNoErr, zelsBigNumGetSize(words, &size));
    EXPECT_EQ(expected, size);
  }
  const std::uint32_t words[] = {1, 2, 3, 0, 0};
  const SecretBuffer other(100);
  const SecretBuffer narrow = MakeBigNum(4, nullptr);
  std::uint8_t* const none = nullptr;
  expect({{zelStsNullPtrErr, zelsBigNumGetSize(0, nullptr)},
          {zelStsLengthErr, zelsBigNumGetSize(0, &size)},
          {zelStsLengthErr, zelsBigNumGetSize(513, &size)},
          {zelStsLengthErr, zelsBigNumInit(0, none)},
          {zelStsNullPtrErr, zelsBigNumInit(1, none)},
          {zelStsNullPtrErr, zelsSet_BN(1, 0, nullptr, other.data())},
          {zelStsNullPtrErr, zelsSet_BN(1, 0, words, none)},
          {zelStsContextMatchErr, zelsSet_BN(1, 0, words, other.data())},
          {zelStsLengthErr, zelsSet_BN(1, 0, words, narrow.data())},
          {zelStsOutOfRangeErr, zelsSet_BN(1, 3, words, narrow.data())},
          {zelStsNullPtrErr, zelsRef_BN(nullptr, nullptr, nullptr, none)},
          {zelStsContextMatchErr,
           zelsRef_BN(nullptr, nullptr, nullptr, other.data())}});
}

TEST(BigNum, ValueSignAndSize) {
  const std::uint32_t words[] = {1, 2, 0x30, 0, 0};
  const SecretBuffer value = MakeBigNum(16, nullptr);
  std::uint32_t sign = 7;
  std::int32_t bits = 7;
  ASSERT_EQ(zelStsNoErr, zelsSet_BN(kNegative, 5, words, value.data()));
  zelsRef_BN(&sign, &bits, nullptr, value.data());
  EXPECT_EQ(kNegative, sign);
  EXPECT_EQ(70, bits);
  EXPECT_EQ(little_endian("300000000200000001", 16), value_of(value, 16));
  if constexpr (std::endian::native == std::endian::little) {
    // A number may be loaded from its own digits.
    const std::uint64_t* digits = nullptr;
    zelsRef_BN(nullptr, nullptr, &digits, value.data());
    ASSERT_EQ(
        zelStsNoErr,
        zelsSet_BN(kPositive, 4, reinterpret_cast<const std::uint32_t*>(digits),
                   value.data()));
    EXPECT_EQ(little_endian("300000000200000001", 16), value_of(value, 16));
  }
  // The word behind an odd count is none of the number's.
  ASSERT_EQ(zelStsNoErr, zelsSet_BN(kPositive, 1, words, value.data()));
  EXPECT_EQ(little_endian("1", 16), value_of(value, 16));
  ASSERT_EQ(zelStsNoErr, zelsSet_BN(kNegative, 2, words + 3, value.data()));
  zelsRef_BN(&sign, &bits, nullptr, value.data());
  EXPECT_EQ(kPositive, sign);
  EXPECT_EQ(1, bits);
  EXPECT_EQ(Bytes(16), value_of(value, 16));
}

TEST(MakeBigNum, TakesWholeWordsOfAnyAlignment) {
  const Bytes bytes = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
  const SecretBuffer value = MakeBigNum(7, bytes.data() + 1);
  EXPECT_EQ(little_endian("04030201", 8), value_of(value, 8));
  for (const std::int32_t size : {-4, 3, 2052}) {
    EXPECT_EQ("ZelError zelsBigNumGetSize failed 0xfffffff1 (-15)",
              message_of([&] { MakeBigNum(size, nullptr); }));
  }
}

}  // namespace
}  // namespace tova_fw_builder
