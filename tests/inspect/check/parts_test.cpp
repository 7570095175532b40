// What the checks are made of: hashes in one reading, the search for stores of
// keys, and which module of 1.5 stands where.
#include <gtest/gtest.h>

#include <algorithm>

#include "inspect/check/addon_roles.h"
#include "inspect/check/beside_files.h"
#include "inspect/check/check.h"
#include "inspect/check/digests.h"
#include "inspect/check/key_store_search.h"
#include "support/bytes.h"

namespace tova_fw_builder {
namespace {

// 600,000 bytes, more than are read at once; the hashes are by Python's
// hashlib, of bytes((i * 7 + 3) % 256 for i in range(600000)).
std::string long_file() {
  std::string bytes(600'000, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    bytes[i] = static_cast<char>(i * 7 + 3);
  }
  return bytes;
}

TEST(Digests, PartsOfAFileInOneReading) {
  using enum Digests::Kind;
  const ByteSource source = ByteSource::of(long_file());
  const ByteSource other = ByteSource::of("");
  Digests digests;
  const std::size_t whole = digests.add(kSha256, source, {{0, 600'000}});
  const std::size_t parts =
      digests.add(kSha384, source, {{100, 299'900}, {300'010, 299'990}});
  const std::size_t border = digests.add(kSha256, source, {{262'143, 2}});
  const std::size_t none = digests.add(kSha256, other, {});
  EXPECT_EQ(whole, digests.add(kSha256, source, {{0, 600'000}}));
  EXPECT_NE(whole, digests.add(kSha384, source, {{0, 600'000}}));
  EXPECT_NE(whole, digests.add(kSha256, other, {{0, 600'000}}));
  std::string seen;
  digests.add(source, [&seen](std::uint64_t offset, std::string_view piece) {
    EXPECT_EQ(seen.size(), offset);
    seen += piece;
  });
  digests.read();
  EXPECT_EQ("6c9405a05c7449219c3e989271ecf8803218bd07966e7ddee24ff693b28b99a9",
            digests.text(whole));
  EXPECT_EQ(
      "eba178cb1dfd3ace4ec9e071c52b86855be02f83c1d7faac5db4e91b3f9a4c0e"
      "b04bfa421c5de8d9012913f5b2ccef66",
      digests.text(parts));
  EXPECT_EQ("c2ce72fcaccf106e961feedac534ff8e74f196b818a0a02d608b5b781c3750d5",
            digests.text(border));
  EXPECT_EQ("e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855",
            digests.text(none));
  EXPECT_TRUE(long_file() == seen);
}

std::string store(const std::vector<std::string>& hashes, int type = 0) {
  std::string bytes = le32(static_cast<std::uint32_t>(hashes.size()));
  for (const std::string& hash : hashes) {
    bytes += le32(static_cast<std::uint32_t>(type)) + hash;
  }
  return bytes;
}

TEST(HasEnding, InCapitalsToo) {
  EXPECT_TRUE(has_ending("a/b.XZ", ".xz"));
  EXPECT_FALSE(has_ending("xz", ".xz"));
}

// The places found in these bytes, which come in pieces of a length.
std::string stores_in(const std::string& bytes, const std::string& expected,
                      std::size_t piece) {
  const CheckedFile file{"f", ByteSource::of(""), {}};
  KeyStoreSearch search(file, expected);
  for (std::size_t at = 0; at < bytes.size(); at += piece) {
    search.take(at, std::string_view(bytes).substr(at, piece));
  }
  search.finish();
  std::string text;
  for (const FoundStore& found : search.found()) {
    text += std::to_string(found.offset) + (found.is_expected ? "! " : " ");
  }
  return text;
}

TEST(KeyStoreSearch, StoresAmongOtherBytes) {
  const std::string hash_a = counting(32, 'a');
  const std::string hash_b = counting(32, 100);
  const std::string flat(32, 'x');
  const std::string few = counting(23) + std::string(9, '\1');
  const std::string expected = store({hash_a, hash_b});
  const std::string filler(997, '\xAA');
  const struct {
    std::string bytes;
    const char* places;
  } cases[] = {
      {expected, "0! "},
      {filler + expected, "997! "},
      {filler + expected + filler + expected, "997! 2070! "},
      {filler + store({hash_a}), "997 "},
      {filler + store({hash_a}, 1), "997 "},
      {filler + store({hash_a}, 2), ""},      // no such type
      {filler + store({hash_a, flat}), ""},   // no hash
      {filler + store({few}), ""},            // 23 different bytes
      {filler + store({}) + filler, ""},      // a count of 0
      {filler + expected.substr(0, 75), ""},  // cut
      {filler + store({hash_a}).substr(0, 39), ""},
      {store(std::vector<std::string>(32, hash_a)), "0 "},
      {store(std::vector<std::string>(33, hash_a)), ""},
      {std::string(3000, '\0'), ""},
      {"", ""},
  };
  for (const auto& c : cases) {
    for (const std::size_t piece : {1u, 7u, 1000u, 100'000u}) {
      EXPECT_EQ(c.places, stores_in(c.bytes, expected, piece))
          << c.bytes.size() << ' ' << piece;
    }
  }
}

// One letter a module: 'm' known to stand in the main binary, 'a' a known
// addon, 'x' unknown, '-' built in; then its length and its place, or none.
RoleQuestion question(char kind, std::uint64_t length, int place = -1) {
  RoleQuestion question;
  question.is_loadable = kind != '-';
  if (kind == 'm' || kind == 'a') question.is_addon = kind == 'a';
  question.length = length;
  if (place >= 0) question.place = static_cast<std::uint64_t>(place);
  return question;
}

TEST(Roles, PlacesTellWhoStandsWhere) {
  const struct {
    std::vector<RoleQuestion> modules;
    std::uint64_t total;  // of the main binary
    const char* roles;    // 'a' or 'm' for each; '?' behind if unsure
  } cases[] = {
      // All that is known needs no places.
      {{question('m', 8), question('-', 0), question('a', 4)}, 8, "mma"},
      // One module, as long as the main binary.
      {{question('x', 8, 0)}, 8, "m"},
      // Base firmware of type 0 counts on by the whole main binary, 8; so the
      // first addon stands at 8, the second one behind it.
      {{question('x', 8, 0), question('x', 4, 8), question('x', 2, 12)},
       8,
       "maa"},
      // Two in the main binary: the place in it is counted on top of the
      // first one's length.
      {{question('x', 4, 0), question('x', 4, 8)}, 8, "mm"},
      {{question('x', 4, 0), question('-', 0), question('x', 4, 8)}, 8, "mmm"},
      // The first one is base firmware, which is counted as 8 all the same.
      {{question('x', 4, 0), question('x', 4, 12)}, 8, "mm"},
      // Places that no way leads to: as long as there is room.
      {{question('x', 8, 0), question('x', 4, 999)}, 8, "ma?"},
      // Too short to fill the main binary.
      {{question('x', 4, 0)}, 8, "m?"},
      // Without places, two of one length may be either.
      {{question('x', 4), question('x', 4)}, 4, "ma?"},
      {{question('a', 4), question('x', 4)}, 4, "am"},
      {{}, 0, ""},
  };
  for (const auto& c : cases) {
    const Roles roles = roles_of(c.modules, c.total);
    std::string text;
    for (const bool is_addon : roles.is_addon) text += is_addon ? 'a' : 'm';
    if (!roles.is_sure) text += '?';
    EXPECT_EQ(c.roles, text);
  }
  // Many modules that all look alike take no time.
  const std::vector<RoleQuestion> many(60, question('x', 1));
  EXPECT_FALSE(roles_of(many, 30).is_sure);
}

}  // namespace
}  // namespace tova_fw_builder
