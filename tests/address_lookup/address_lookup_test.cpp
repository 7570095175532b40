#include "address_lookup/address_lookup.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>

#include "address_lookup/address_words.h"
#include "address_lookup/owner_forms.h"
#include "companion/ground/json.h"
#include "inspect/check/check.h"
#include "inspect/check/image_samples.h"
#include "support/bytes.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

using Numbers = std::vector<std::uint32_t>;

TEST(RangeIndex, FindsAllThatHaveAnAddress) {
  const RangeIndex index({{30, 40}, {0, 100}, {10, 20}, {10, 10}, {15, 35}});
  EXPECT_EQ((Numbers{1}), index.at(0));
  EXPECT_EQ((Numbers{1, 2}), index.at(10));
  EXPECT_EQ((Numbers{1, 2, 4}), index.at(19));
  EXPECT_EQ((Numbers{1, 4}), index.at(20));
  EXPECT_EQ((Numbers{1, 4, 0}), index.at(34));
  EXPECT_EQ((Numbers{1}), index.at(99));
  EXPECT_EQ((Numbers{}), index.at(100));
  EXPECT_EQ((Numbers{0}), RangeIndex({{0xFFFFFFF0, 0x100000000}}).at(~0u));
}

// Few and many, short and over all: by a look at each of them.
TEST(RangeIndex, IsALookAtEach) {
  std::mt19937 random(19);
  for (unsigned count = 0; count < 60; ++count) {
    std::vector<AddressRange> ranges;
    for (unsigned i = 0; i < count; ++i) {
      const std::uint64_t begin = random() % 200;
      ranges.push_back({begin, begin + (i % 5 == 0 ? 150 : random() % 9)});
    }
    const RangeIndex index(ranges);
    for (std::uint64_t address = 0; address < 360; ++address) {
      Numbers expected;
      for (std::uint32_t i = 0; i < count; ++i) {
        if (ranges[i].has(address)) expected.push_back(i);
      }
      const auto begin = [&](std::uint32_t i) { return ranges[i].begin; };
      std::ranges::stable_sort(expected, {}, begin);
      ASSERT_EQ(expected, index.at(address)) << count << ' ' << address;
    }
  }
}

TEST(AddressWords, Numbers) {
  const std::pair<const char*, std::int64_t> cases[] = {
      {"0", 0},
      {"0x1f", 0x1F},
      {"0XffffFFFF", 0xFFFFFFFF},
      {"c0de", 0xC0DE},
      {"100000000", -1},
      {"0000000012345678", 0x12345678},
      {"", -1},
      {"0x", -1},
      {"12g", -1},
      {"-1", -1},
      {" 1", -1},
      {"1 ", -1},
      {"0x0x1", -1},
      {"+1", -1},
      {"ffffffff80000000", -1},
      {"99999999999999999999999", -1},
  };
  for (const auto& [text, number] : cases) {
    const auto address = parse_address(text);
    EXPECT_EQ(number, address ? std::int64_t{*address} : -1) << text;
  }
}

TEST(AddressWords, InLogs) {
  const auto found = [](const std::string& log) {
    std::istringstream in(log);
    std::string text;
    find_addresses(in, [&text](std::uint32_t address) {
      std::ostringstream word;
      word << std::hex << address << ' ';
      text += word.str();
    });
    return text;
  };
  EXPECT_EQ(
      "10008004 1f 10001010 ",
      found("pc=0x10008004, a0: 0x1f lr [<10001010>] dead 0x 1234 r_10\n"));
  EXPECT_EQ("add 4c ", found("  add\r\n[4c]\nadd it\n"));
  EXPECT_EQ("deadbeef ",
            found("deadbeef 123456789 x12345678 0x1ffffffff 0012345678"));
  EXPECT_EQ("", found(""));
  // As a console may leave them in a log.
  EXPECT_EQ("10 20 ", found(std::string("pc 0x10\0 lr 0x20\n", 16)));
  // Cut where the room for a line ends.
  EXPECT_EQ("12345678 ", found(std::string(4088, ' ') + "12345678 x\n"));
  EXPECT_EQ("12345678 ", found(std::string(4096, ' ') + "12345678 x\n"));
}

// What a reader of the answers has seen, and how often he was sent some.
struct Answers : std::stringbuf {
  int sync() override {
    seen = str();
    ++count;
    return 0;
  }
  std::string seen;
  int count = 0;
};

// A console that notes what of the answers is seen when more is waited for.
class Console : public std::streambuf {
 public:
  Console(std::vector<std::string> pieces, const Answers& answers)
      : pieces_(std::move(pieces)), answers_(answers) {}
  std::vector<std::string> seen;

 protected:
  int_type underflow() override {
    seen.push_back(answers_.seen);
    if (seen.size() > pieces_.size()) return traits_type::eof();
    std::string& piece = pieces_[seen.size() - 1];
    setg(piece.data(), piece.data(), piece.data() + piece.size());
    return traits_type::to_int_type(piece[0]);
  }

 private:
  std::vector<std::string> pieces_;
  const Answers& answers_;
};

// The last answer ahead of a prompt, too; but none by itself.
TEST(AddressWords, AnswersAreSeenAheadOfAWait) {
  Answers answers;
  std::ostream out(&answers);
  std::string many;
  for (int i = 0; i < 1000; ++i) many += "-\n";
  Console console({many + "pc 0x10\nlr 0x", "20\n0x30\n> "}, answers);
  std::istream in(&console);
  in.tie(&out);
  find_addresses(in, [&out](std::uint32_t address) { out << address << ' '; });
  EXPECT_EQ((std::vector<std::string>{"", "16 ", "16 32 48 "}), console.seen);
  EXPECT_LT(answers.count, 20);
}

// Two modules; built_in has a page of the first, over has the last page, too.
std::vector<ImageSegment> segments() {
  return {
      {"base", "text", {0x1000, 0x4000}, false, "fw.bin", 0x200},
      {"base", "bss", {0x8000, 0x9000}, false, "", 0},
      {"built_in", "text", {0x2000, 0x3000}, true, "", 0},
  };
}

// A list of one ELF in `dir`, as tova_fw tables writes it.
ElfPlaces elf_places(const TempDir& dir) {
  dir.write("fw.sections",
            "Idx\n"
            "0 .text 00001080 00001000 00001000 00000000 2**2\n"
            "CONTENTS, ALLOC, LOAD\n"
            "1 .text.in 00000100 00002080 00002080 00000000 2**2\n"
            "CONTENTS, ALLOC, LOAD\n"
            "2 .bss 00000010 00008000 00008000 00000000 2**2\nALLOC\n"
            "3 .debug 00000010 00001000 00001000 00000000 2**2\nCONTENTS\n"
            "4 .empty 00000000 00003000 00003000 00000000 2**2\nALLOC\n"
            "5 .heap 00000100 0000a000 0000a000 00000000 2**2\nALLOC\n");
  dir.write("fw.symbols",
            "00001010 t aaa\n00001010 T alpha\n00001010 T zulu\n"
            "00001050 t late\n00001060 A absolute\n00001070 n of_debug\n"
            "00001072 v weak\n00000fff T before\n0000a010 B heap_top\n");
  return ElfPlaces(
      dir.write("fw.elfs", dir.file("fw.elf") + "\nfw.sections\nfw.symbols\n"));
}

std::string text_of(const AddressLookup& lookup, std::uint32_t address) {
  std::ostringstream out;
  print_owners(out, lookup, address, lookup.owners_of(address));
  return out.str();
}

TEST(AddressLookup, SegmentsAlone) {
  const AddressLookup lookup(segments(), {});
  EXPECT_EQ("0x00001004  base  text+0x4  fw.bin@0x204\n",
            text_of(lookup, 0x1004));
  EXPECT_EQ("0x00003fff  base  text+0x2fff  fw.bin@0x31ff\n",
            text_of(lookup, 0x3FFF));
  EXPECT_EQ("0x00004000  belongs to nothing\n", text_of(lookup, 0x4000));
  EXPECT_EQ("0x00008010  base  bss+0x10  -\n", text_of(lookup, 0x8010));
  // Its bytes stand where those of the carrier do.
  EXPECT_EQ("0x00002004  built_in  text+0x4  fw.bin@0x1204\n",
            text_of(lookup, 0x2004));
  std::vector<ImageSegment> ahead = segments();
  std::swap(ahead[0], ahead[2]);
  ahead[0].range.begin = 0x1000;
  EXPECT_EQ("0x00001004  built_in  text+0x4  fw.bin@0x204\n",
            text_of(AddressLookup(ahead, {}), 0x1004));
}

// Module, type and place of each segment that has one.
std::string placed(const ImageSample& sample,
                   const std::vector<std::string>& names) {
  std::vector<CheckedFile> files;
  for (const std::string& name : names) {
    files.push_back(checked_file(name, ByteSource::of(sample.at(name))));
  }
  std::ostringstream out;
  for (const ImageSegment& segment : image_segments(files)) {
    if (segment.file.empty()) continue;
    out << segment.module << ' ' << segment.type << ' ' << segment.file << '@'
        << std::hex << segment.file_offset << '\n';
  }
  return out.str();
}

// Of the sample's bytes: text 8192, constants 4096, and 4096 of the addon, from
// 32768 on, less the 8128 of the signer in 1.8.
TEST(ImageSegments, PlacesInTheFiles) {
  EXPECT_EQ(
      "base text firmware.bin@6040\nbase rodata firmware.bin@8040\n"
      "addon1 text firmware.bin@9040\n",
      placed(image_sample("1.8"), {"firmware.bin"}));
  EXPECT_EQ(
      "base text firmware.bin@8000\nbase rodata firmware.bin@a000\n"
      "addon1 text firmware.bin@b000\n",
      placed(image_sample("3.0"), {"firmware.bin"}));
  const ImageSample sample = image_sample("1.5");
  const std::string base =
      "base text firmware.bin@0\nbase rodata firmware.bin@2000\n";
  EXPECT_EQ("", placed(sample, {"firmware.bin", "firmware.man.ext"}));
  EXPECT_EQ("", placed(sample, {"firmware.man"}));
  EXPECT_EQ(base, placed(sample, {"firmware.man", "firmware.bin"}));
  EXPECT_EQ(base + "addon1 text " + kAddonFile + "@0\n",
            placed(sample, {kAddonFile, "firmware.man", "firmware.bin"}));
}

// The constants run below the text, and the addon a page behind them: so far
// it is loaded from them, and so many zeros stand ahead of it.
TEST(ImageSegments, ZerosAheadOfAddons) {
  ImageSample sample = image_sample("3.0");
  std::string& binary = sample["firmware.bin"];
  const std::size_t entries = entries_offset("3.0");
  binary.replace(entries + 96, 4, le32(0x0F000000));
  binary.replace(entries + 2 * kEntry + 84, 4, le32(0x0F002000));
  binary.insert(0xB000, 4096, '\0');
  EXPECT_EQ(
      "base text firmware.bin@8000\nbase rodata firmware.bin@a000\n"
      "addon1 text firmware.bin@c000\n",
      placed(sample, {"firmware.bin"}));
  // Ahead of the constants, too; but a library follows without.
  sample = image_sample("3.0");
  std::string& library = sample["firmware.bin"];
  library.replace(entries + 96, 4, le32(0x10003000));
  library[entries + 2 * kEntry + 28] = '\x81';
  library.replace(entries + 2 * kEntry + 84, 4, le32(0x10006000));
  library.insert(0xA000, 4096, '\0');
  EXPECT_EQ(
      "base text firmware.bin@8000\nbase rodata firmware.bin@b000\n"
      "addon1 text firmware.bin@c000\n",
      placed(sample, {"firmware.bin"}));
}

TEST(ImageSegments, FilesOfTheirOwnCountAheadOfAPackage) {
  ImageSample sample = image_sample("1.5");
  sample["joined"] = sample["firmware.bin"] + sample[kAddonFile];
  EXPECT_EQ(
      "base text joined@0\nbase rodata joined@2000\n"
      "addon1 text joined@3000\n",
      placed(sample, {"firmware.man", "firmware.pkg", "joined"}));
  EXPECT_EQ(
      "base text firmware.bin@0\nbase rodata firmware.bin@2000\n"
      "addon1 text joined@3000\n",
      placed(sample,
             {"firmware.man", "firmware.pkg", "joined", "firmware.bin"}));
}

TEST(ImageSegments, NoPlaceWhereTheHeaderIsDamaged) {
  // The addon in the same bytes as the constants of the base.
  ImageSample sample = image_sample("1.8");
  std::string& binary = sample["firmware.bin"];
  const std::size_t place = binary.find(le32(0xB000));
  ASSERT_LT(place, 0x6040u);
  binary.replace(place, 4, le32(0xA000));
  EXPECT_EQ("", placed(sample, {"firmware.bin"}));
  // Pages of 1.5 that the modules don't fill: which stand there isn't known.
  sample = image_sample("1.5");
  sample["firmware.man"][entries_offset("1.5") - 36] = 9;
  EXPECT_EQ("", placed(sample, {"firmware.man", "firmware.bin"}));
  // Contents of 3.0 that are neither packed nor spaced.
  sample = image_sample("3.0");
  sample["firmware.bin"].pop_back();
  EXPECT_EQ("", placed(sample, {"firmware.bin"}));
}

TEST(AddressLookup, SectionsAndSymbols) {
  const TempDir dir;
  const AddressLookup lookup(segments(), elf_places(dir));
  const std::pair<std::uint32_t, const char*> cases[] = {
      {0x1000, "base  .text+0x0  -  fw.bin@0x200"},
      {0x100F, "base  .text+0xf  -  fw.bin@0x20f"},
      {0x1010, "base  .text+0x10  alpha+0x0  fw.bin@0x210"},
      {0x104F, "base  .text+0x4f  alpha+0x3f  fw.bin@0x24f"},
      {0x1077, "base  .text+0x77  late+0x27  fw.bin@0x277"},
      // Padding has a segment alone.
      {0x3800, "base  text+0x2800  -  fw.bin@0x2a00"},
      // The built-in module and the section in it.
      {0x2090, "built_in  .text.in+0x10  -  fw.bin@0x1290"},
      {0x8004, "base  .bss+0x4  -  -"},
      {0xA018, "-  .heap+0x18  heap_top+0x8  -"},
  };
  for (const auto& [address, expected] : cases) {
    EXPECT_EQ(expected,
              text_of(lookup, address).substr(12, std::string(expected).size()))
        << std::hex << address;
    EXPECT_EQ(1u, lookup.owners_of(address).size());
  }
  EXPECT_EQ("0x0000a018  -  .heap+0x18  heap_top+0x8\n",
            text_of(AddressLookup({}, elf_places(dir)), 0xA018));
}

TEST(AddressLookup, OverlaidModulesAreAllTold) {
  const TempDir dir;
  std::vector<ImageSegment> two = segments();
  two[2] = {"other", "text", {0x1000, 0x3000}, false, "fw.bin", 0x8000};
  EXPECT_EQ(
      "0x00001004  base  text+0x4  fw.bin@0x204\n"
      "0x00001004  other  text+0x4  fw.bin@0x8004\n",
      text_of(AddressLookup(two, {}), 0x1004));
  // One section in two segments is in either; which of two is in which isn't
  // known.
  const AddressLookup lookup(two, elf_places(dir));
  EXPECT_EQ(
      "0x00001004  base  .text+0x4  -  fw.bin@0x204\n"
      "0x00001004  other  .text+0x4  -  fw.bin@0x8004\n",
      text_of(lookup, 0x1004));
  dir.write("fw.sections",
            "Idx\n0 .a 00000100 00001000 0 0 2**2\nALLOC\n"
            "1 .b 00000100 00001000 0 0 2**2\nALLOC\n");
  EXPECT_EQ(
      "0x00001004  -  .a+0x4  -  -\n"
      "0x00001004  -  .b+0x4  -  -\n"
      "0x00001004  base  text+0x4  -  fw.bin@0x204\n"
      "0x00001004  other  text+0x4  -  fw.bin@0x8004\n",
      text_of(AddressLookup(two, ElfPlaces(dir.file("fw.elfs"))), 0x1004));
}

TEST(AddressLookup, Json) {
  const TempDir dir;
  const AddressLookup lookup(segments(), elf_places(dir));
  const auto in_list = [](const AddressLookup& in, std::uint32_t address) {
    return "[\n    " + owners_json(address, in.owners_of(address)) + "\n  ]";
  };
  // The library writes the whole in the same way.
  const auto as_written = [](const std::string& list) {
    const std::string text = json_text({{"list", Json::parse(list)}});
    return text.substr(12, text.size() - 15);
  };
  EXPECT_EQ(
      as_written(
          R"([{"address":4116,"owners":[{"module":"base","segment":"text",)"
          R"("segment_offset":20,"section":".text","section_offset":20,"elf":")" +
          dir.file("fw.elf") +
          R"(","symbol":"alpha","symbol_offset":4,"file":"fw.bin",)"
          R"("file_offset":532}]}])"),
      in_list(lookup, 0x1014));
  EXPECT_EQ(as_written(R"([{"address":1,"owners":[]}])"), in_list(lookup, 1));
  std::vector<ImageSegment> odd = segments();
  odd[2] = {"\xFFq\"\\", "text", {0x1000, 0x3000}, false, "", 0};
  EXPECT_EQ(
      as_written(
          R"([{"address":4096,"owners":[{"module":"base","segment":"text",)"
          R"("segment_offset":0,"file":"fw.bin","file_offset":512},)"
          R"({"module":"\ufffdq\"\\","segment":"text","segment_offset":0}]}])"),
      in_list(AddressLookup(odd, {}), 0x1000));
}

TEST(ElfPlaces, TroubleNamesTheTable) {
  const TempDir dir;
  dir.write("bad", "Idx\n0 .text 10 20\n");
  const std::string list = dir.write("list", "elf\nbad\nnone\n");
  EXPECT_EQ(dir.file("bad") + ": Not recognizeg alignment specified",
            message_of([&] { ElfPlaces places(list); }));
  dir.write("bad", "");
  EXPECT_EQ(
      "its file none can't be opened, neither from here nor from the list; "
      "tova_fw_builder counts it from the definition's folder",
      message_of([&] { ElfPlaces places(list); }));
  dir.write("list", "elf\nmy table\nnone\n");
  EXPECT_EQ(
      "its file my can't be opened; a list ends a path at its first blank",
      message_of([&] { ElfPlaces places(list); }));
  dir.write("list", "elf\n");
  EXPECT_EQ(
      "Invalid number of lines in ELF list. Must be list of pairs <elf, "
      "memmap, nm>; each ELF has three lines, the last one with a line feed, "
      "too: tova_fw tables writes such a list",
      message_of([&] { ElfPlaces places(list); }));
  EXPECT_EQ("cannot be read: Is a directory",
            message_of([&] { ElfPlaces places(dir.path()); }));
}

}  // namespace
}  // namespace tova_fw_builder
