#include <gtest/gtest.h>

#include <array>
#include <numeric>
#include <string>
#include <vector>

#include "crypto/internal/sha_blocks.h"
#include "crypto/sha_hash.h"
#include "crypto/zel_error.h"
#include "crypto/zels_hash.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

using Bytes = std::vector<std::uint8_t>;

std::string hex(const Bytes& bytes) {
  std::string text;
  for (const int byte : bytes) {
    text += "0123456789abcdef"[byte >> 4];
    text += "0123456789abcdef"[byte & 15];
  }
  return text;
}

// The digest of `message` in pieces of uneven sizes that depend on `seed`; one
// piece for a seed of 0.
template <typename Hash, std::size_t kDigest>
std::string digest_of(const Bytes& message, std::size_t seed) {
  Hash hash(message.data(), seed == 0 ? message.size() : 0);
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

// The examples of FIPS 180-4.
TEST(Sha, PublishedExamples) {
  const struct {
    Bytes message;
    const char* sha256;
    const char* sha384;
  } cases[] = {
      {text_bytes(""),
       "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855",
       "38b060a751ac96384cd9327eb1b1e36a21fdb71114be07434c0cc7bf63f6e1da274edeb"
       "fe76f65fbd51ad2f14898b95b"},
      {text_bytes("abc"),
       "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad",
       "cb00753f45a35e8bb5a03d699ac65007272c32ab0eded1631a8b605a43ff5bed8086072"
       "ba1e7cc2358baeca134c825a7"},
      {text_bytes("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
       "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1",
       "3391fdddfc8dc7393707a65b1b4709397cf8b1d162af05abfe8f450de5f36bc6b0455a8"
       "520bc4e6f5fe95b1fe3c8452b"},
      {text_bytes("abcdefghbcdefghicdefghijdefghijkefghijklfghijklmghijklmn"
                  "hijklmnoijklmnopjklmnopqklmnopqrlmnopqrsmnopqrstnopqrstu"),
       "cf5b16a778af8380036ce59e7b0492370b249b11e8f07a51afac45037afee9d1",
       "09330c33f71147e83d192fc782cd1b4753111b173b3b05d22fa08086e3b0f712fcc7c71"
       "a557e2db966c3e9fa91746039"},
      {Bytes(1000000, 'a'),
       "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0",
       "9d0e1809716474cb086e834e310a4a1ced149e9c00f248527972cec5704c2a5b07b8b3d"
       "c38ecc4ebae97ddd87f3d8985"},
  };
  for (const auto& c : cases) {
    for (const std::size_t seed : {0u, 1u, 7u}) {
      EXPECT_EQ(c.sha256, sha256_of(c.message, seed)) << c.message.size();
      EXPECT_EQ(c.sha384, sha384_of(c.message, seed)) << c.message.size();
    }
  }
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

// The tests above run the build that is chosen here, and this one holds the
// others against it: any number of blocks, any alignment, any state.
TEST(Sha, AllBuildsAgree) {
  Bytes data(64 * 128 + 16);
  std::iota(data.begin(), data.end(), std::uint8_t{1});
  for (std::size_t count = 0; count <= 63; ++count) {
    const std::uint8_t* at = data.data() + count % 16;
    std::array<std::uint32_t, 8> expected = {1, 2, 3, 4, 5, 6, 7, ~0u};
    std::array<std::uint64_t, 8> expected_long = {1, 2, 3, 4, 5, 6, 7, ~0ull};
    const auto start = expected;
    const auto start_long = expected_long;
    sha256_blocks_portable(expected.data(), at, count);
    sha512_blocks_portable(expected_long.data(), at, count);
    for (const Sha256Blocks blocks : sha256_builds()) {
      auto state = start;
      blocks(state.data(), at, count);
      EXPECT_EQ(expected, state) << count;
    }
    for (const Sha512Blocks blocks : sha512_builds()) {
      auto state = start_long;
      blocks(state.data(), at, count);
      EXPECT_EQ(expected_long, state) << count;
    }
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

TEST(ZelStatus, Texts) {
  EXPECT_STREQ("zelStsIvalidPrivateKey ECC: Invalid private key",
               zels_status_text(-1008));
  EXPECT_STREQ("zelStsNoErr: No errors", zels_status_text(0));
  EXPECT_STREQ("Wrong combination of features", zels_status_text(51));
  EXPECT_STREQ("zelStsUnknownStatusCodeErr: Unknown status code",
               zels_status_text(-3));
}

}  // namespace
}  // namespace tova_fw_builder
