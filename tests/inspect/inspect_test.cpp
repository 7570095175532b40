#include "inspect/inspect.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "inspect/bytes.h"
#include "inspect/json.h"
#include "inspect/sample_files.h"
#include "inspect/text.h"

namespace tova_fw_builder {
namespace {

Inspected inspect_bytes(const std::string& bytes,
                        std::optional<Format> as = {}) {
  return inspect(ByteSource::of(bytes), as, Depth::kWhole);
}

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

struct Sample {
  const char* format;
  std::string bytes;
};

std::vector<Sample> samples() {
  return {{"binary", binary_18()},
          {"binary", binary_30()},
          {"manifest-1.5", manifest_15(false)},
          {"manifest-1.5", manifest_15(true)},
          {"metadata", metadata_18()},
          {"extended-manifest", extended_manifest()},
          {"package-descriptor", package_descriptor()},
          {"key-pair", key_pair()},
          {"public-key", public_key()}};
}

TEST(Inspect, SamplesAreKnownAndWhole) {
  for (const Sample& sample : samples()) {
    const Inspected inspected = inspect_bytes(sample.bytes);
    EXPECT_EQ(sample.format, format_name(inspected.format));
    EXPECT_TRUE(inspected.problems.empty()) << sample.format;
  }
}

struct Value {
  const char* path;
  const char* text;
};

void expect_values(const Inspected& inspected, std::vector<Value> values) {
  for (const Value& value : values) {
    const Field* field = find(inspected.root, value.path);
    ASSERT_NE(nullptr, field) << value.path;
    EXPECT_EQ(value.text, value_text(*field)) << value.path;
  }
}

TEST(Inspect, FieldsOfABinary) {
  const Inspected inspected = inspect_bytes(binary_18());
  expect_values(
      inspected,
      {{"generation", "1.8 or 2.5"},
       {"header_offset", "0x40"},
       {"header.name", "TINY"},
       {"header.feature_mask", "0xff"},
       {"header.build_ver", "4"},
       {"modules[0].uuid", "5a5a5a5a-5a5a-5a5a-5a5a-5a5a5a5a5a5a"},
       {"modules[0].type.value", "0x431"},
       {"modules[0].type.loadable", "yes"},
       {"modules[0].type.auto_init", "yes"},
       {"modules[0].type.domain_ll", "yes"},
       {"modules[0].type.domain_dp", "no"},
       {"modules[0].type.library", "no"},
       {"modules[0].type.core_type", "2"},
       {"modules[0].segments[1].flags", "contents alloc load readonly data"},
       {"modules[0].segments[1].flags_value", "0x2f"},
       {"modules[0].segments[1].file_off", "0x9000"},
       {"modules[0].segments[2].len", "3"},
       {"modules[1].segments[1].type", "unused"},
       {"modules[1].configurations[0].par_0", "1"},
       {"modules[1].configurations[0].obls", "11"},
       {"symbol_table.count", "3"},
       {"symbols[0].name", "a"},
       {"symbols[1].name", "b"},
       {"symbols[1].module", "1"},
       {"symbols[1].address", "0x10000804"}});
  EXPECT_EQ(2u, find(inspected.root, "symbols")->members.size());
  EXPECT_EQ("the signer puts 8128 bytes in front",
            find(inspected.root, "header_offset")->note);
}

// With the signer's bytes in front, the header stands at 8192.
TEST(Inspect, BytesInFrontOfABinary) {
  const std::string front = "signer" + std::string(8122, '\0');
  const Inspected whole = inspect_bytes(front + binary_18());
  EXPECT_TRUE(whole.problems.empty());
  EXPECT_EQ("a signer's bytes stand in front",
            find(whole.root, "header_offset")->note);
  EXPECT_EQ(6u, find(whole.root, "signer_part")->length);
  const Inspected short_by_one = inspect_bytes(front.substr(1) + binary_18());
  ASSERT_EQ(1u, short_by_one.problems.size());
  EXPECT_EQ(
      "the bytes in front of the header are not zero: damage, or a signer's "
      "part that is 1 byte too short",
      short_by_one.problems[0].text);
  const Inspected shifted = inspect_bytes(std::string(64, '\0') + binary_30());
  expect_values(shifted, {{"generation", "3.0"}, {"header_offset", "0x40"}});
  ASSERT_EQ(1u, shifted.problems.size());
  EXPECT_EQ(
      "64 bytes in front of the header, which 3.0 has at 0: cut off what "
      "stands in front",
      shifted.problems[0].text);
}

TEST(Inspect, FieldsOfTheOtherFormats) {
  expect_values(inspect_bytes(binary_30()), {{"generation", "3.0"}});
  expect_values(
      inspect_bytes(manifest_15(false)),
      {{"css.debug", "no"}, {"signed", "no"}, {"public_key_hash", "-"}});
  // The hashes by python's hashlib, over modulus and exponent as in the
  // manifest.
  expect_values(
      inspect_bytes(manifest_15(true)),
      {{"css.debug", "yes"},
       {"signed", "yes"},
       {"exponent", "00010001"},
       {"public_key_hash",
        "264057c93d6d04e944d2343fb4d2275fb385e629db1d900b25c3b11e1396a8ee"}});
  const Inspected manifest = inspect_bytes(manifest_15(true));
  EXPECT_EQ("0302", text_at(manifest.root, "modulus").substr(0, 4));
  EXPECT_EQ("0504", text_at(manifest.root, "signature").substr(508));
  EXPECT_EQ("29 February 2024", find(manifest.root, "css.date")->note);
  expect_values(inspect_bytes(metadata_18()), {{"generation", "1.8"},
                                               {"tova_imr_type", "0x3"},
                                               {"limit_offset", "0xa040"}});
  expect_values(inspect_bytes(extended_manifest()),
                {{"modules[0].version", "1.2.3.4"},
                 {"modules[0].type", "27"},
                 {"modules[0].capabilities[0].sched_first", "7"},
                 {"modules[0].capabilities[0].sched_flags", "0x8001"},
                 {"modules[0].pins[0].sample_sizes", "0x4"},
                 {"modules[0].pins[0].channel_cfg", "0x6"},
                 {"modules[1].type", "3"}});
  expect_values(inspect_bytes(package_descriptor()),
                {{"version", "1.2.3.4"},
                 {"build_date", "0x20240229"},
                 {"modules", "eins zwei"},
                 {"files[0].path", "/tmp/tiny.bin"},
                 {"files[0].name", "It's tiny "},
                 {"files[0].version", "-"},
                 {"files[1].name", "Addon "},
                 {"files[1].version", "10.0.0.1"}});
  expect_values(
      inspect_bytes(public_key()),
      {{"bits", "2048"},
       {"exponent", "010001"},
       {"public_key_hash",
        "a5e236cb6ad086816d257bb4d59bc7a4d15580c0703d12a8cddcfafbfee8847f"}});
}

// A header at 0 is one of 3.0 or one behind a room of 8192 bytes.
TEST(Inspect, GenerationOfAHeaderAtTheStart) {
  const std::string tables = header_tables(10, 32768);
  const std::string wide_room =
      Bytes().text(tables).fill_to(24576).fill(8192, 'c');
  const Inspected inspected = inspect_bytes(wide_room);
  expect_values(inspected, {{"generation", "1.8 or 2.5"}});
  EXPECT_TRUE(inspected.problems.empty());
  EXPECT_EQ(24576u,
            find(inspected.root, "contents.modules[0].segments[0]")->offset);
}

// One field of 3.0 may be damaged; of an image of 1.8 without contents, or with
// those of one segment, the length tells.
TEST(Inspect, GenerationsThatLookAlike) {
  const std::string tables = binary_30().substr(0, kTablesLength);
  const auto with = [&](char pages, bool one_place) {
    std::string bytes = tables;
    bytes[16] = pages;
    if (one_place) bytes.replace(52 + 92 + 8, 4, 4, '\0');
    return bytes;
  };
  const struct {
    std::string tables;
    std::size_t length;
    const char* generation;
  } cases[] = {
      {with(8, false), 40960, "3.0"},
      {with(8, true), 40960, "3.0"},
      {with(9, false), 40960, "3.0"},
      {with(9, true), 28672, "1.8 or 2.5"},
      {with(8, false), 24576, "1.8 or 2.5"},
      {with(8, false), 24577, "3.0"},
  };
  for (const auto& c : cases) {
    const std::string bytes = Bytes().text(c.tables).fill_to(c.length);
    EXPECT_EQ(c.generation,
              text_at(inspect_bytes(bytes, Format::kBinary).root, "generation"))
        << &c - cases;
  }
}

TEST(Inspect, StructuresInside) {
  const std::string flash = Bytes()
                                .fill(260'000, '$')
                                .text(manifest_15(true))
                                .text(extended_manifest())
                                .fill(262'100 - 264'220 + 4096, '\x06')
                                .text(public_key())
                                .text(metadata_18());
  const Inspected inspected = inspect_bytes(flash);
  expect_values(inspected, {{"embedded[0].format", "manifest-1.5"},
                            {"embedded[0].offset", "0x3f7a0"},
                            {"embedded[1].format", "extended-manifest"},
                            {"embedded[1].length", "124"},
                            {"embedded[2].format", "public-key"},
                            {"embedded[3].format", "metadata"}});
  EXPECT_EQ(nullptr, find(inspected.root, "embedded[4]"));
  EXPECT_TRUE(is_known(inspected));
  EXPECT_FALSE(is_known(inspect_bytes("nothing")));
  EXPECT_TRUE(is_known(inspect_bytes("")));
  EXPECT_TRUE(is_known(inspect_bytes(std::string(4096, 'x'))));
}

// What isn't read or listed is told as such, not as damage.
TEST(Inspect, LimitsAreTold) {
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
TEST(Inspect, DamageIsToldWhereItIs) {
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
      {manifest_15(true), 25, 3, "3072: 1024 bytes stand behind the manifest"},
      // What an unsigned one has behind its size, the symbols' 36 bytes.
      {manifest_15(true).append(36, '\0'), 20, 0x28,
       "4096: 36 bytes stand behind the manifest"},
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
      {extended_manifest(), 12, 1, "84: 40 bytes stand behind the last module"},
      {extended_manifest() + "xx", 123, 0,
       "124: 2 bytes stand behind the last"},
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

TEST(Inspect, KindsOfModules) {
  const struct {
    char type;
    const char* kind;
  } cases[] = {{0x00, "built in"},
               {0x01, "loadable"},
               {0x02, "unknown"},
               {0x11, "loadable, started"},
               {'\x80', "built in, library"},
               {'\x91', "loadable, library, started"}};
  for (const auto& c : cases) {
    std::string bytes = binary_18();
    bytes[64 + 52 + 28] = c.type;
    EXPECT_EQ(c.kind,
              find(inspect_bytes(bytes).root, "modules[0].type.value")->note);
  }
}

// The tables may end where the contents begin, 24640, and no byte later. The
// configurations are as many as are counted, and no symbol stands behind them.
TEST(Inspect, TablesAheadOfContents) {
  const std::size_t one = 64 + 52;
  const std::size_t two = one + 116;
  const struct {
    unsigned configurations;  // of 44 bytes, from 348 on
    bool reaches;
  } cases[] = {{551, false}, {552, true}, {553, true}};
  for (const auto& c : cases) {
    const std::size_t end = two + 116 + 44 * c.configurations;
    std::string bytes = binary_18();
    bytes.replace(two + 70, 2, Bytes().u16(c.configurations));
    bytes.replace(end, 8, 8, '\0');
    const std::vector<Problem> problems = inspect_bytes(bytes).problems;
    EXPECT_EQ(c.reaches,
              std::any_of(problems.begin(), problems.end(),
                          [](const Problem& problem) {
                            return problem.offset == 24640 &&
                                   problem.text ==
                                       "the tables reach into the contents";
                          }))
        << c.configurations;
  }
}

// Any of the three areas makes it signed; the key's hash is that of what
// stands there.
TEST(Inspect, PartsOfASignature) {
  for (const std::size_t place : {128u, 387u, 400u, 643u}) {
    std::string bytes = manifest_15(false);
    EXPECT_EQ(0u, number_at(inspect_bytes(bytes).root, "signed"));
    bytes[place] = 'x';
    EXPECT_EQ(1u, number_at(inspect_bytes(bytes).root, "signed")) << place;
  }
}

// A number of a key is told between its own texts alone.
TEST(Inspect, NumbersOfDamagedKeys) {
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
TEST(Inspect, RangesCoverAnyFile) {
  for (const Sample& sample : samples()) {
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
TEST(Inspect, PrivateNumbersAreNeverShown) {
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
