#include <gtest/gtest.h>

#include <array>
#include <numeric>
#include <string>
#include <vector>

#include "crypto/internal/sha_blocks.h"
#include "crypto/sha_hash.h"
#include "crypto/zel_error.h"
#include "crypto/zels_hash.h"
#include "support/bytes.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

using Bytes = std::vector<std::uint8_t>;

std::string hex(const Bytes& bytes) {
  return hex_of({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

// The digest of `message` in pieces of uneven sizes that depend on `seed`; one
// piece for a seed of 0.
template <typename Hash, std::size_t kDigest>
std::string digest_of(const Bytes& message, std::size_t seed) {
  Hash hash = seed == 0 ? Hash(message.data(), message.size())
                        : Hash(message.data());  // begins empty
  for (std::size_t at = 0; seed != 0 && at < message.size();) {
    seed = seed * 1103515245 + 12345;
    const std::size_t step = std::min(message.size() - at, (seed >> 16) % 150);
    hash.update(message.data() + at, step);
    at += step;
  }
  Bytes digest(kDigest);
  hash.final(digest.data());
  return hex(digest);
}

constexpr auto sha256_of = digest_of<Sha256Hash, 32>;
constexpr auto sha384_of = digest_of<Sha384Hash, 48>;

Bytes text_bytes(const std::string& text) { return {text.begin(), text.end()}; }

// An example of FIPS 180-4, for the count of bits in more than two bytes.
TEST(Sha, OneMillionLetters) {
  const Bytes message(1000000, 'a');
  EXPECT_EQ("cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0",
            sha256_of(message, 7));
  EXPECT_EQ(
      "9d0e1809716474cb086e834e310a4a1ced149e9c00f248527972cec5704c2a5b07b8b3d"
      "c38ecc4ebae97ddd87f3d8985",
      sha384_of(message, 0));
}

// Every length from 0 to 600, whole and cut up, against a digest over all the
// digests that Python's hashlib gave:
//   m = bytes((i * 7 + n) & 255 for i in range(n)) for n in range(601)
TEST(Sha, EveryLengthAroundTheBlockSizes) {
  for (const std::size_t seed : {0u, 3u, 99u}) {
    std::string all256;
    std::string all384;
    for (std::size_t n = 0; n <= 600; ++n) {
      Bytes message(n);
      for (std::size_t i = 0; i < n; ++i) {
        message[i] = static_cast<std::uint8_t>(i * 7 + n);
      }
      all256 += sha256_of(message, seed * (n + 1));
      all384 += sha384_of(message, seed * (n + 1));
    }
    EXPECT_EQ(
        "cdde380bbebad9dbec58eab2171ef1e3bbf3861b2489af697a570fba4ebd9ce4",
        sha256_of(text_bytes(all256), 0));
    EXPECT_EQ(
        "88fa3464907294da2c449d96a2e29cdc6d1793c33011fe9772ffe6ffc1071904",
        sha256_of(text_bytes(all384), 0));
  }
}

// The tests above run the variant that is chosen here, and this one holds the
// portable one against it: any number of blocks, any alignment, any state.
TEST(Sha, BothVariantsAgree) {
  Bytes data(64 * 128 + 16);
  std::iota(data.begin(), data.end(), std::uint8_t{1});
  for (std::size_t count = 0; count <= 63; ++count) {
    const std::uint8_t* at = data.data() + count % 16;
    std::array<std::uint32_t, 8> expected = {1, 2, 3, 4, 5, 6, 7, ~0u};
    std::array<std::uint64_t, 8> expected_long = {1, 2, 3, 4, 5, 6, 7, ~0ull};
    auto state = expected;
    auto state_long = expected_long;
    sha256_blocks_portable(expected.data(), at, count);
    sha512_blocks_portable(expected_long.data(), at, count);
    sha256_blocks()(state.data(), at, count);
    sha512_blocks()(state_long.data(), at, count);
    EXPECT_EQ(expected, state) << count;
    EXPECT_EQ(expected_long, state_long) << count;
  }
}

TEST(Sha, MisalignedBuffersOfExactSize) {
  const Bytes message(200, 'x');
  std::string expected = sha256_of(message, 0);
  for (std::size_t skip = 0; skip < 8; ++skip) {
    const auto buffer = std::make_unique<std::uint8_t[]>(skip + 119);
    std::uint8_t* context = buffer.get() + skip;
    Bytes digest(32);
    ASSERT_EQ(zelStsNoErr, zelsSHA256Init(context));
    for (int i = 0; i < 2; ++i) {  // Final starts a new message
      zelsSHA256Update(message.data(), 200, context);
      ASSERT_EQ(zelStsNoErr, zelsSHA256Final(digest.data(), context));
      EXPECT_EQ(expected, hex(digest));
    }
  }
}

struct HashFunctions {
  ZelStatus (*get_size)(std::int32_t*);
  ZelStatus (*init)(std::uint8_t*);
  ZelStatus (*update)(const std::uint8_t*, std::int32_t, std::uint8_t*);
  ZelStatus (*final)(std::uint8_t*, std::uint8_t*);
  std::int32_t size;
  const char* tag;
};

constexpr HashFunctions kHashes[] = {
    {zelsSHA256GetSize, zelsSHA256Init, zelsSHA256Update, zelsSHA256Final, 119,
     "2SHS"},
    {zelsSHA384GetSize, zelsSHA384Init, zelsSHA384Update, zelsSHA384Final, 223,
     "5SHS"},
};

// Each call breaks one condition and, where it can, all that are tested behind
// it; the context must be as it was.
TEST(ZelsHash, ConditionsInTheirOrder) {
  for (const HashFunctions& hash : kHashes) {
    std::int32_t size = 0;
    EXPECT_EQ(zelStsNullPtrErr, hash.get_size(nullptr));
    EXPECT_EQ(zelStsNoErr, hash.get_size(&size));
    EXPECT_EQ(hash.size, size);

    alignas(8) std::array<std::uint8_t, 223> context = {};
    EXPECT_EQ(zelStsNullPtrErr, hash.init(nullptr));
    EXPECT_EQ(zelStsNullPtrErr, hash.update(nullptr, -1, nullptr));
    EXPECT_EQ(zelStsNullPtrErr, hash.final(nullptr, nullptr));
    EXPECT_EQ(zelStsContextMatchErr, hash.update(nullptr, -1, context.data()));
    EXPECT_EQ(zelStsContextMatchErr, hash.final(nullptr, context.data()));

    ASSERT_EQ(zelStsNoErr, hash.init(context.data()));
    EXPECT_EQ(hash.tag, std::string(context.begin(), context.begin() + 4));
    ASSERT_EQ(zelStsNoErr, hash.update(context.data(), 5, context.data()));
    const auto before = context;
    EXPECT_EQ(zelStsLengthErr, hash.update(nullptr, -1, context.data()));
    EXPECT_EQ(zelStsNoErr, hash.update(nullptr, 0, context.data()));
    EXPECT_EQ(zelStsNullPtrErr, hash.update(nullptr, 1, context.data()));
    EXPECT_EQ(zelStsNullPtrErr, hash.final(nullptr, context.data()));
    EXPECT_EQ(before, context);
  }
}

TEST(ShaHash, LengthsAreCutTo32Bits) {
  const Bytes byte = {1};
  EXPECT_EQ("ZelError zelsSHA256Update failed 0xfffffff1 (-15)",
            message_of([&] { Sha256Hash(byte.data(), 0x80000000u); }));
  EXPECT_EQ("ZelError zelsSHA384Update failed 0xfffffff1 (-15)",
            message_of([&] { Sha384Hash(byte.data(), 0x80000000u); }));
  Bytes digest(32);
  Sha256Hash hash(byte.data(), std::uint64_t{1} << 32);
  hash.final(digest.data());
  EXPECT_EQ(sha256_of({}, 0), hex(digest));
  EXPECT_EQ("ZelError zelsSHA384Final failed 0xfffffff8 (-8)",
            message_of([] { Sha384Hash().final(nullptr); }));
}

TEST(ZelError, TextIsBuiltOnce) {
  const ZelError error(1, "op");
  const char* text = error.what();
  EXPECT_STREQ("ZelError op failed 0x1 (1)", text);
  EXPECT_EQ(text, error.what());
  EXPECT_EQ("no exception", message_of([] { throw_unless_ok(0, "op"); }));
}

}  // namespace
}  // namespace tova_fw_builder
