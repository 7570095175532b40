#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "inspect/bytes.h"
#include "inspect/inspected_sample.h"
#include "inspect/json.h"
#include "inspect/recognise.h"
#include "inspect/text.h"

namespace tova_fw_builder {
namespace {

TEST(Inspect, SamplesAreKnownAndWhole) {
  for (const SampleFile& sample : sample_files()) {
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
  EXPECT_TRUE(inspect_bytes(metadata_18().replace(76, 4, Bytes().u32(0x2000)))
                  .problems.empty());
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
      {std::string(64, '\0') + with(8, true), 40960, "1.8 or 2.5"},
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

}  // namespace
}  // namespace tova_fw_builder
