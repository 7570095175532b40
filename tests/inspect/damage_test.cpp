// Damaged files: what is told of them, that nothing of them is left out, and
// that nothing private is shown.
#include <gtest/gtest.h>

#include <sstream>

#include "inspect/bytes.h"
#include "inspect/inspected_sample.h"
#include "inspect/json.h"
#include "inspect/text.h"

namespace tova_fw_builder {
namespace {

// All that a user can see of a file.
std::string everything(const Inspected& inspected) {
  std::ostringstream out;
  out << inspected.title << '\n';
  print_fields(out, inspected.root, false, {});
  print_fields(out, inspected.root, true, {});
  print_problems(out, inspected, {});
  print_byte_ranges(out, inspected);
  print_member(out, inspected.root, 0);
  print_ranges_member(out, inspected, 0);
  return out.str();
}

// What isn't read or listed is told as such, not as damage.
TEST(Damage, LimitsAreTold) {
  constexpr unsigned kModules = 5000;  // more than 192 KiB
  Bytes extended;
  extended.text("$TE1").u32(16 + 40 * kModules).u32(1).u32(kModules);
  for (unsigned i = 0; i < kModules; ++i) extended.u32(40).fill(36);
  const Inspected long_one = inspect_bytes(extended);
  ASSERT_EQ(1u, long_one.problems.size());
  EXPECT_EQ(
      "only 4915 of 5000 modules can be shown: tova_fw reads no more than "
      "196608 bytes of records",
      long_one.problems[0].text);
  Bytes many;
  many.text("x");
  for (int i = 0; i < 4097; ++i) many.text("$TE1").u32(16).u32(1).u32(0);
  EXPECT_EQ(
      "contents with 4096 structures inside, and more, which are not listed",
      inspect_bytes(many).title);
}

// One changed number, and what is told of it. Places of a binary count from its
// header at 64: 116 + 64 is the first module's entry, 232 + 64 the second.
TEST(Damage, DamageIsToldWhereItIs) {
  const std::size_t one = 64 + 52;
  const std::size_t two = one + 116;
  const std::size_t symbols = two + 116 + 44;
  const struct {
    std::string bytes;
    std::size_t place;
    char byte;
    const char* problem;
  } cases[] = {
      {binary_18(), 68, 53, "68: header_len is 53, not 52"},
      {binary_18().replace(2000, 4, "$TM1"), 68, 53, "68: header_len is 53"},
      {binary_18(), 77, 'x', "72: the name has bytes behind its end"},
      {binary_18(), 80, 11,
       "32832: the file has 32832 bytes, and its page count tells 36928"},
      {binary_18(), 103, 1, "348: only 2 of 16777218 module entries"},
      {binary_18(), one, 'x',
       "116: the mark $TME of a module entry is missing"},
      {binary_18(), one + 28, 2, "144: a module is neither loadable nor built"},
      {binary_18(), one + 31, 1, "144: reserved bits of a module's type"},
      {binary_18(), one + 30, 2, "144: reserved bits of a module's type"},
      {binary_18(), one + 80, '\x9F',
       "196: reserved bits of a segment are set"},
      {binary_18(), one + 81, 1, "197: a segment of type 1 stands in slot 0"},
      {binary_18(), one + 93, 0, "209: a segment of type 0 stands in slot 1"},
      {binary_18(), one + 82, 3, "204: contents of eins lie outside the file"},
      {binary_18(), one + 90, 1, "204: contents of eins lie outside the file"},
      // Where the signer's room is, ahead of the file.
      {binary_18(), one + 89, 0x10,
       "204: contents of eins lie outside the file"},
      {binary_18(), two + 96, 1, "324: a segment that isn't in use has values"},
      {binary_18(), two + 68, 1, "300: cfg_off is 1, and the module's"},
      {binary_18(), two + 71, '\x7F', "348: only 738 of 32513 configurations"},
      {binary_18(), symbols + 4, 2, "396: a symbol's record points at no mod"},
      {binary_18(), symbols + 5, 2, "396: a symbol's record points at no mod"},
      {binary_18(), symbols + 8, 45, "392: the symbol table is damaged"},
      {binary_18(), symbols + 28, 99, "392: the symbol table is damaged"},
      {binary_18(), 1000, 1, "1000: padding is not zero"},
      {binary_30(), 30000, 1, "30000: padding is not zero"},
      {manifest_15(true), 0, 7, "0: module_type is 0x7, not 0x6"},
      {manifest_15(true), 12, 1, "12: reserved bits of module_id are set"},
      {manifest_15(true), 22, '\x13', "20: the date is none"},
      {manifest_15(true), 25, 5, "4096: the file ends 1024 bytes ahead of"},
      {manifest_15(true), 25, 3, "3072: 1024 bytes behind the manifest"},
      // What an unsigned one has behind its size, the symbols' 36 bytes.
      {manifest_15(true).append(36, '\0'), 20, 0x28,
       "4096: 36 bytes behind the manifest"},
      {manifest_15(true), 25, '\x20',
       "24: size is beyond the longest manifest"},
      {manifest_15(true), 100, 1, "40: reserved bytes are not zero"},
      {metadata_18(), 4, 97, "4: extension_length is 97, not 96"},
      {metadata_18(), 20, 1, "12: reserved bytes are not zero"},
      {metadata_18(), 77, 0, "76: limit_offset lies below base_offset"},
      {metadata_18(), 36, 1, "36: version is 1, not 0"},
      {metadata_18(), 73, 0, "72: base_offset is 0, not 8192"},
      {extended_manifest(), 4, 1, "4: the file has 124 bytes, and its heading"},
      {extended_manifest(), 12, 3, "124: the file ends ahead of its last"},
      {extended_manifest().substr(0, 123), 4, 123, "123: the file ends ahead"},
      {extended_manifest(), 12, 1, "84: 40 bytes behind the last module"},
      {extended_manifest() + "xx", 123, 0, "124: 2 bytes behind the last"},
      {extended_manifest() + 'x', 123, 0, "124: 1 byte behind the last"},
      {extended_manifest(), 16, 1, "16: a module's length is 1, and its"},
      {extended_manifest(), 48, 1, "48: reserved bytes are not zero"},
      {package_descriptor(), 50, 'x', "50: a line that no package descriptor"},
      {package_descriptor(), 66, 'x', "62: the line of build_date has no"},
      {public_key(), 50, 'x', "43: the text )(1:n256: is missing"},
  };
  for (const auto& c : cases) {
    std::string bytes = c.bytes;
    bytes.at(c.place) = c.byte;
    std::string all;
    for (const Problem& problem : inspect_bytes(bytes).problems) {
      all += std::to_string(problem.offset) + ": " + problem.text + '\n';
    }
    EXPECT_NE(std::string::npos,
              ('\n' + all).find(std::string("\n") + c.problem))
        << c.place << " " << c.problem << " not in\n"
        << all;
  }
}

// The list of what is wrong ends with a word about the rest.
TEST(Damage, ProblemsAreCountedUpToAThousand) {
  std::string bytes = package_descriptor();
  for (int i = 0; i < 1000; ++i) bytes += "x\n";
  EXPECT_EQ("a line that no package descriptor has",
            inspect_bytes(bytes).problems.back().text);
  EXPECT_EQ(1000u, inspect_bytes(bytes).problems.size());
  for (int i = 0; i < 2; ++i) {
    bytes += "x\n";
    const auto problems = inspect_bytes(bytes).problems;
    ASSERT_EQ(1001u, problems.size());
    EXPECT_EQ("a line that no package descriptor has", problems[999].text);
    EXPECT_EQ("there are more than 1000 problems: mend these first",
              problems[1000].text);
  }
}

// A number of a key is told between its own texts alone.
TEST(Damage, NumbersOfDamagedKeys) {
  const struct {
    std::size_t place;
    const char* exponent;
    const char* modulus_head;
  } cases[] = {
      {10, "-", "1211"},     // ahead of the exponent
      {44, "-", "-"},        // between the two
      {308, "010001", "-"},  // behind the modulus
  };
  for (const auto& c : cases) {
    std::string bytes = public_key();
    bytes.at(c.place) = '#';
    const Inspected inspected = inspect_bytes(bytes, Format::kPublicKey);
    const auto value = [&](const char* path) {
      return value_text(*find(inspected.root, path));
    };
    EXPECT_EQ(c.exponent, value("exponent")) << c.place;
    EXPECT_EQ(c.modulus_head, value("modulus").substr(0, 4)) << c.place;
    EXPECT_EQ("-", value("public_key_hash"));
  }
}

void expect_tiles(const std::string& bytes, std::optional<Format> as) {
  const Inspected inspected = inspect_bytes(bytes, as);
  std::uint64_t end = 0;
  for (const ByteRange& range : byte_ranges(inspected)) {
    ASSERT_EQ(end, range.offset);
    ASSERT_LT(0u, range.length);
    end += range.length;
  }
  ASSERT_EQ(bytes.size(), end);
}

// Whatever a file holds, the ranges cover it. Long stretches of zeros and
// contents are cut in steps.
TEST(Damage, RangesCoverAnyFile) {
  for (const SampleFile& sample : sample_files()) {
    const auto as = format_named(sample.format);
    for (std::size_t cut = 0; cut <= sample.bytes.size();
         cut += cut < 1100 ? 1 : 1021) {
      expect_tiles(sample.bytes.substr(0, cut), as);
      std::string bytes = sample.bytes;
      if (cut < bytes.size()) bytes[cut] ^= '\x81';
      expect_tiles(bytes, as);
    }
    for (std::size_t other = 0; other < format_names().size(); ++other) {
      expect_tiles(sample.bytes, static_cast<Format>(other));
    }
  }
}

// The private numbers consist of SECRET-d and so on; no form may show eight of
// their bytes, wherever damage has moved them.
TEST(Damage, PrivateNumbersAreNeverShown) {
  const std::string pair = key_pair();
  std::vector<std::string> files;
  for (const unsigned count : {0u, 1u, 40u, 323u, 330u, 643u, 700u}) {
    files.push_back(pair.substr(count));
    files.push_back(std::string(count, ' ') + pair);
    std::string without = pair;
    files.push_back(without.erase(60, count));
  }
  for (const std::string& file : files) {
    for (std::size_t as = 0; as < format_names().size(); ++as) {
      const std::string shown =
          everything(inspect_bytes(file, static_cast<Format>(as)));
      EXPECT_EQ(std::string::npos, shown.find("SECRET"));
      EXPECT_EQ(std::string::npos, shown.find("534543524554"));  // the same
      EXPECT_EQ(std::string::npos, shown.find("544552434553"));  // and reversed
    }
  }
}

}  // namespace
}  // namespace tova_fw_builder
