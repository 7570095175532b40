// Two trees: the samples, with bytes planted by hand.
#include "inspect/compare/compare_trees.h"

#include <gtest/gtest.h>

#include "inspect/compare/echoes.h"
#include "inspect/inspect.h"
#include "inspect/sample_files.h"
#include "told.h"

namespace tova_fw_builder {
namespace {

std::string compare(const std::string& old_bytes, const std::string& new_bytes,
                    Format format) {
  const ByteSource old_source = ByteSource::of(old_bytes);
  const ByteSource new_source = ByteSource::of(new_bytes);
  auto changes =
      compare_trees({old_source, inspect(old_source, format, Depth::kTables)},
                    {new_source, inspect(new_source, format, Depth::kTables)});
  mark_echoes(changes, {});
  return told(changes);
}

struct Patch {
  std::size_t offset;
  std::string bytes;
};

std::string patched(std::string bytes, const std::vector<Patch>& patches) {
  for (const Patch& patch : patches) {
    bytes.replace(patch.offset, patch.bytes.size(), patch.bytes);
  }
  return bytes;
}

// Places in binary_18: its header stands at 64, two entries of 116 bytes, one
// configuration of 44 bytes and the symbols behind it.
constexpr std::size_t kHeader = 64;
constexpr std::size_t kOne = kHeader + 52;
constexpr std::size_t kTwo = kOne + 116;
constexpr std::size_t kConfiguration = kTwo + 116;
constexpr std::size_t kSymbols = kConfiguration + 44;
constexpr std::size_t kContents = 24640;

constexpr const char* kMovedSegment =
    "moved [moved by what grew, shrank or moved ahead of it]\n";

struct Case {
  std::vector<Patch> patches;
  std::string told;
};

TEST(CompareTrees, FieldsOfABinary) {
  const std::string grown =
      std::string("modules[eins].segments[text].len 1 -> 2\n") +
      "modules[eins].segments[text].contents 4096 -> 8192, 0 in 0, first 0\n"
      "modules[eins].segments[rodata].vma 0x10001000 -> 0x10002000, " +
      kMovedSegment +
      "modules[eins].segments[rodata].file_off 0x9000 -> 0xa000, " +
      kMovedSegment +
      "modules[eins].segments[rodata].contents 4096 -> 0, 0 in 0, first 0\n";
  const Case cases[] = {
      {{{kHeader + 24, "\x01"}}, "header.feature_mask 0xff -> 0x1\n"},
      // A byte that the value doesn't show.
      {{{kHeader + 15, "x"}}, "header.name 8 -> 8, 1 in 1, first 7\n"},
      {{{kOne + 4, "drei"}}, "modules[eins].name eins -> drei\n"},
      {{{kOne + 32, "\x78"}},
       "modules[eins].hash "
       "7777777777777777777777777777777777777777777777777777777777777777 -> "
       "7877777777777777777777777777777777777777777777777777777777777777\n"},
      // The contents and their hash; the padding in front; the tables' end.
      {{{kContents + 4097, "d"}, {kOne + 32, "\x78"}},
       "modules[eins].hash "
       "7777777777777777777777777777777777777777777777777777777777777777 -> "
       "7877777777777777777777777777777777777777777777777777777777777777 "
       "[the hash of contents that changed]\n"
       "modules[eins].segments[rodata].contents 4096 -> 4096, 1 in 1, first "
       "1\n"},
      {{{7, "x"}},
       "padding[0] 64 -> 56, 0 in 0, first 0 [zeros between what moved]\n"
       "signer_part 0 -> 8, 0 in 0, first 0\n"},
      // Text grows by a page: what lies behind it has moved.
      {{{kOne + 82, "\x02"},
        {kOne + 97, "\x20"},
        {kOne + 101, std::string("\xA0\0\0", 3)}},
       grown},
      // It grows, and what lies behind it stays: what moves farther on has a
      // reason of its own.
      {{{kOne + 82, "\x02"}, {kOne + 110, "\x01"}},
       "modules[eins].segments[text].len 1 -> 2\n"
       "modules[eins].segments[text].contents 4096 -> 8192, 0 in 0, first 0\n"
       "modules[eins].segments[bss].vma 0x20000000 -> 0x20010000\n"},
      // Two that changed places in the file, and a byte of the first one.
      {{{kOne + 89, "\x90"}, {kOne + 101, "\x80"}, {kContents + 4097, "d"}},
       "modules[eins].segments[text].file_off 0x8000 -> 0x9000\n"
       "modules[eins].segments[text].contents 4096 -> 4096, 1 in 1, first 1\n"
       "modules[eins].segments[rodata].file_off 0x9000 -> 0x8000\n"},
      // A type's bits, and the number that they are.
      {{{kOne + 28, "\x21"}},
       "modules[eins].type.value 0x431 -> 0x421 [the number of what changed in "
       "it]\n"
       "modules[eins].type.auto_init yes -> no\n"},
      {{{kOne + 80, "\x1E"}},
       "modules[eins].segments[text].flags contents alloc load readonly code "
       "-> alloc load readonly code\n"
       "modules[eins].segments[text].flags_value 0x1f -> 0x1e [the number of "
       "the flags]\n"},
      // An entry point that nothing moved; one inside of what changed.
      {{{kTwo + 64, "\x04"}}, "modules[zwei].ep 0x10000800 -> 0x10000804\n"},
      {{{kOne + 64, "\x44"}, {kContents + 8, "d"}},
       "modules[eins].ep 0x10000040 -> 0x10000044, moved [moved with its "
       "segment, or inside of contents that changed]\n"
       "modules[eins].segments[text].contents 4096 -> 4096, 1 in 1, first 8\n"},
      // The whole segment moved, with its entry and its symbol.
      {{{kOne + 86, "\x01"}, {kOne + 66, "\x01"}, {kSymbols + 14, "\x01"}},
       "modules[eins].ep 0x10000040 -> 0x10010040, moved [moved with its "
       "segment, or inside of contents that changed]\n"
       "modules[eins].segments[text].vma 0x10000000 -> 0x10010000\n"
       "symbols[a].address 0x10000044 -> 0x10010044, moved [moved with its "
       "segment, or inside of contents that changed]\n"},
      {{{kConfiguration + 4, "\x09"}},
       "modules[zwei].configurations[0].par_1 2 -> 9\n"},
      {{{kSymbols + 5, std::string(1, '\1')}}, "symbols[a].module 0 -> 1\n"},
      // A UUID that is another: the name tells.
      {{{kTwo + 12, "\x5C"}},
       "modules[zwei].uuid 5b5b5b5b-5b5b-5b5b-5b5b-5b5b5b5b5b5b -> "
       "5b5b5b5c-5b5b-5b5b-5b5b-5b5b5b5b5b5b\n"},
  };
  const std::string whole = binary_18();
  EXPECT_EQ("", compare(whole, whole, Format::kBinary));
  for (const Case& c : cases) {
    EXPECT_EQ(c.told,
              compare(whole, patched(whole, c.patches), Format::kBinary));
  }
}

// One at the end of the segment that moved, where the next one begins.
TEST(CompareTrees, AnAddressBehindASegmentIsNotInIt) {
  const std::string old_bytes =
      patched(binary_18(), {{kSymbols + 12, std::string("\0\x10\0\x10", 4)}});
  EXPECT_EQ(
      "modules[eins].segments[text].vma 0x10000000 -> 0x10010000\n"
      "symbols[a].address 0x10001000 -> 0x10011000\n",
      compare(
          old_bytes,
          patched(old_bytes, {{kOne + 86, "\x01"}, {kSymbols + 14, "\x01"}}),
          Format::kBinary));
}

// A byte behind the end of the shorter file is no padding that only moved.
TEST(CompareTrees, PaddingOfOneSide) {
  const std::string whole = binary_18();
  EXPECT_EQ("padding[2] 0 -> 3, 1 in 1, first 2\n",
            compare(whole, whole + std::string("\0\0x", 3), Format::kBinary));
  EXPECT_EQ("padding[2] 3 -> 0, 1 in 1, first 0\n",
            compare(whole + std::string("x\0\0", 3), whole, Format::kBinary));
}

TEST(CompareTrees, MembersOfOneSide) {
  // Without the second module: its entry, its configuration and its symbol go.
  std::string fewer = binary_18();
  fewer[kHeader + 36] = '\x01';
  fewer.erase(kTwo, 116 + 44);
  fewer.insert(kTwo + 40, 160, '\0');
  fewer.replace(kTwo, 40,
                Bytes()
                    .u32(1)
                    .u8(1)
                    .u8(0)
                    .u16(0)
                    .u32(20)
                    .u32(0x10000044)
                    .u32(2)
                    .text(std::string("a\0", 2))
                    .fill_to(40));
  const std::string text = compare(binary_18(), fewer, Format::kBinary);
  EXPECT_EQ(
      "header.num_mods 2 -> 1 [counts the modules]\n"
      "modules[zwei]  -> -\n"
      "symbols[a].name_offset 44 -> 20 [the place of the name]\n"
      "symbols[b]  -> -\n"
      "symbol_table.count 3 -> 1 [counts the symbols]\n"
      "symbol_table.names_length 4 -> 2 [the length of the names]\n"
      "padding[1] 24212 -> 24386, 0 in 0, first 0 [zeros between what "
      "moved]\n",
      text);
}

TEST(CompareTrees, OtherFormats) {
  const struct {
    std::string whole;
    Format format;
    std::vector<Patch> patches;
    const char* told;
  } cases[] = {
      {manifest_15(true),
       Format::kManifest15,
       {{12, std::string(4, '\0')}},
       "css.module_id 0x80000000 -> 0x0 [the number of css.debug]\n"
       "css.debug yes -> no\n"},
      {metadata_18(),
       Format::kMetadata,
       {{8, "\x04"}},
       "tova_imr_type 0x3 -> 0x4\n"},
      {metadata_18(),
       Format::kMetadata,
       {{13, "\x04"}},
       "reserved_12 zero -> "
       "000400000000000000000000000000000000000000000000\n"},
      {extended_manifest(),
       Format::kExtendedManifest,
       {{60, "\x02"}},
       "modules[5a5a5a5a-5a5a-5a5a-5a5a-5a5a5a5a5a5a].pins[0].pin_flag 1 -> "
       "2\n"},
      {package_descriptor(),
       Format::kPackageDescriptor,
       {{54, "9"}},
       "version 1.2.3.4 -> 9.2.3.4\n"},
      // A private number is told by its bytes alone.
      {key_pair(),
       Format::kKeyPair,
       {{700, "#"}},
       "d 256 -> 256, 1 in 1, first "},
  };
  for (const auto& c : cases) {
    const std::string text =
        compare(c.whole, patched(c.whole, c.patches), c.format);
    EXPECT_EQ(0u, text.find(c.told)) << text;
    EXPECT_EQ(std::string::npos, text.find("SECRET"));
  }
}

// Fields that share bytes without end can't be compared one by one: then the
// whole files are, so that no difference is lost.
TEST(CompareTrees, SharedBytesAreComparedOnce) {
  Bytes bytes;
  bytes.text("$TM1").u32(52).fill(8).u32(9).fill(16).u32(1500).fill(12);
  for (int i = 0; i < 1500; ++i) {
    bytes.text("$TMEm").text(std::to_string(1000 + i)).fill(19);
    bytes.u32(1).fill(48);
    for (unsigned slot = 0; slot < 3; ++slot) {
      bytes.u8(0x1F).u8(slot).u16(0xFFFF).u32(0).u32(40960);
    }
  }
  const std::string whole = bytes.fill_to(300'000);
  const std::string other = patched(whole, {{290'000, "x"}});
  EXPECT_EQ("", compare(whole, whole, Format::kBinary));
  EXPECT_NE(std::string::npos,
            compare(whole, other, Format::kBinary)
                .find("bytes 300000 -> 300000, 1 in 1, first 290000\n"));
}

}  // namespace
}  // namespace tova_fw_builder
