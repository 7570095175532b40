// Whole images, and a fault in one of their files.
#include <gtest/gtest.h>

#include <algorithm>

#include "inspect/check/checked_sample.h"
#include "support/bytes.h"

namespace tova_fw_builder {
namespace {

TEST(Check, WholeImagesHold) {
  const struct {
    const char* generation;
    const char* summary;
    const char* hashes;
  } cases[] = {
      {"1.5", "firmware 1.2.3.4  generation 1.5  12288 bytes  unsigned",
       "ok firmware.bin: 1 module, 12288 bytes\n"},
      {"1.8", "firmware 1.2.3.4  generation 1.8  41024 bytes",
       "ok firmware.bin: 2 modules, 16384 bytes\n"},
      {"2.5", "firmware 1.2.3.4  generation 2.5  41024 bytes",
       "ok firmware.bin: 2 modules, 16384 bytes\n"},
      {"3.0",
       "firmware 1.2.3.4  generation 3.0  49152 bytes  contents without hashes",
       "not checked firmware.bin: the modules of 3.0 have no hashes\n"},
  };
  for (const auto& c : cases) {
    const Checked checked = check(image_sample(c.generation));
    EXPECT_TRUE(holds(checked)) << failed(checked);
    EXPECT_EQ(c.summary, checked.summary);
    EXPECT_EQ("", gaps(checked));
    EXPECT_TRUE(checked.unknown.empty()) << c.generation;
    EXPECT_NE(std::string::npos,
              lines_of(checked, "module-hash").find(c.hashes))
        << lines_of(checked, "module-hash");
    EXPECT_EQ(std::string::npos,
              lines_of(checked, "package").find("not checked"));
  }
}

// What is planted in a file: bytes at a place, or another length.
struct Fault {
  const char* generation;
  const char* file;  // "bin" for firmware.bin and so on
  std::size_t offset;
  std::string bytes;
  const char* failed;
};

// Places of the tables, from the module entries on.
constexpr std::size_t kBaseEntry = 0;
constexpr std::size_t kInEntry = kEntry;
constexpr std::size_t kAddonEntry = 2 * kEntry;
constexpr std::size_t kSymbols = 3 * kEntry;

TEST(Check, FaultsAreFoundByTheirChecks) {
  const Fault faults[] = {
      // In the entries: the offset counts from the first one.
      {"1.8", "entry", kBaseEntry, "x", "structure image-digest "},
      {"1.8", "entry", kBaseEntry + 32, "x", "module-hash image-digest "},
      {"3.0", "entry", kBaseEntry + 32, "x", "structure "},  // no hashes there
      {"1.5", "entry", kInEntry + 32, "x", "module-hash "},
      {"1.5", "entry", kAddonEntry + 60, "x", "module-hash "},
      {"1.5", "entry", kInEntry + 12, std::string(16, '\0'),
       "uuids extended-manifest "},
      {"1.8", "entry", kInEntry + 12, std::string(16, 'B'),
       "uuids image-digest extended-manifest "},
      {"3.0", "entry", kAddonEntry + 12, std::string(16, 'C'),
       "extended-manifest package "},
      {"1.5", "entry", kBaseEntry + 84, "\x01", "pages "},
      {"3.0", "entry", kBaseEntry + 108, "\x01", "pages "},
      {"1.8", "entry", kAddonEntry + 88, "\x01",
       "structure pages module-hash image-digest "},
      {"1.5", "entry", kInEntry + 84, "\x01", ""},  // where it is built in
      {"1.5", "entry", kBaseEntry + 101, "\x20", "segments-apart "},
      {"1.8", "entry", kAddonEntry + 89, "\xA0",
       "structure segments-apart image-digest "},
      // Ahead of the file, where the signer's room is: nothing is hashed.
      {"1.8", "entry", kAddonEntry + 88, std::string("\x00\x10\0\0", 4),
       "structure segments-apart image-digest "},
      {"1.8", "entry", kAddonEntry + 82, "\x02",
       "structure module-hash image-digest "},
      {"3.0", "entry", kAddonEntry + 82, "\x02", "length "},
      {"1.8", "entry", kBaseEntry + 4, "bass", "image-digest package "},
      {"1.8", "entry", kBaseEntry + 28, "\x81", "image-digest package "},
      // The symbol: its address, its name, its segment.
      {"1.5", "entry", kSymbols + 12, std::string("\x00\x20\x00\x10", 4),
       "symbol-names "},
      {"1.5", "entry", kSymbols + 12, std::string("\xff\x1f\x00\x10", 4), ""},
      {"1.5", "entry", kSymbols + 20, std::string("\0", 1),
       "structure symbol-names "},
      {"1.5", "entry", kSymbols + 6, "\x01", "symbol-names "},
      {"1.5", "entry", kSymbols, "\x02", "structure length symbol-names "},
      // The header ahead of the entries, and the manifest's own.
      {"1.8", "entry", std::size_t{0} - 28, "\x01", "image-digest package "},
      {"1.5", "entry", std::size_t{0} - 32, "\x11", "package "},
      {"3.0", "entry", std::size_t{0} - 36, "\x09", "pages "},
      {"1.5", "man", 4, "\xA0", "structure signed-part "},
      {"1.5", "man", 25, "\x01", "structure length signed-part "},
      {"1.5", "man", 20, "\x28", "package "},
      {"1.5", "man", 36, "\x02", "structure "},  // exp_size
      {"1.5", "man", 50, "\x01", "structure "},
      {"1.8", "man", 40, "x", "image-digest "},
      {"2.5", "man", 87, "x", "image-digest "},
      {"2.5", "man", 4, "x", "structure length "},
      {"1.8", "man", 76, "\x41", "image-length "},
      {"1.8", "man", 80, "\x41", "structure "},
      {"1.8", "ext", 20, "C", "extended-manifest "},
      {"1.8", "ext", 96 + 32, "\x02", "structure "},
      // Contents, first and last byte of each.
      {"1.5", "bin", 0, "x", "module-hash "},
      {"1.5", "bin", 12287, "x", "module-hash "},
      {"1.5", "addon", 4095, "x", "module-hash "},
      {"1.8", "bin", 24640, "x", "module-hash image-digest "},
      {"1.8", "bin", 41023, "x", "module-hash image-digest "},
      {"1.8", "bin", 30, "x", "structure image-digest "},
      {"1.8", "bin", 24639, "x", "structure image-digest "},
      // The package descriptor: a digit of each line.
      {"1.5", "pkg", 54, "9", "package "},      // ver
      {"1.5", "pkg", 66, "1", "package "},      // bld
      {"1.5", "pkg", 79, "5", "package "},      // mft
      {"1.5", "pkg", 87, "2", "package "},      // flg
      {"1.5", "pkg", 97, "e", "package "},      // sku
      {"1.5", "pkg", 106, "bass", "package "},  // cfg
      {"1.5", "pkg", 111, "  ", "package "},    // one fewer
      {"1.5", "pkg", 127, "x", "package "},     // main file, by name
      {"1.8", "pkg", 121, "x", "package "},     //
      {"1.5", "pkg", 222, "2", "package "},     // ver.
  };
  for (const Fault& fault : faults) {
    ImageSample image = image_sample(fault.generation);
    const std::string file = fault.file;
    const bool is_entry = file == "entry";
    const bool in_manifest = is_entry && fault.generation == std::string("1.5");
    std::string& bytes =
        image.at(file == "addon" ? kAddonFile
                 : file == "ext" ? "firmware.man.ext"
                                 : "firmware." + (in_manifest ? "man"
                                                  : is_entry  ? "bin"
                                                              : file));
    const std::size_t offset =
        fault.offset + (is_entry ? entries_offset(fault.generation) : 0);
    bytes.replace(offset, fault.bytes.size(), fault.bytes);
    EXPECT_EQ(fault.failed, failed(check(image)))
        << fault.generation << ' ' << file << ' ' << offset;
  }
}

// The manifest of 1.8 and 2.5 is of the file without what a signer puts ahead.
TEST(Check, BinaryBehindASigner) {
  const struct {
    std::size_t front;  // the header stands 8128 bytes short of 8192
    std::size_t flipped;
    const char* failed;
  } cases[] = {
      {8128, 0, ""},
      {8128, 8127, ""},               // the signer's own
      {8128, 8128, "image-digest "},  // ahead of the header
      {8128, 8128 + 41023, "module-hash image-digest "},
      {8127, 8126, "structure image-digest image-length "},
  };
  for (const char* generation : {"1.8", "2.5"}) {
    for (const auto& c : cases) {
      ImageSample image = image_sample(generation);
      std::string& binary = image.at("firmware.bin");
      binary.insert(0, c.front, '\0');
      binary[c.flipped] = 's';
      EXPECT_EQ(c.failed, failed(check(image))) << generation << c.flipped;
    }
    ImageSample cut = image_sample(generation);
    cut.at("firmware.bin").pop_back();
    EXPECT_NE(std::string::npos,
              lines_of(check(cut), "image-length").find("ends at 0xc03f\n"));
    // The longest part that a signer has.
    ImageSample whole = image_sample(generation);
    std::string& binary = whole.at("firmware.bin");
    binary.replace(0, 64, 8192, '\0');
    std::string& manifest = whole.at("firmware.man");
    manifest.replace(manifest.size() - 20, 4, le32(0xC000));
    EXPECT_TRUE(lines_of(check(whole), "image-length").starts_with("ok "));
  }
}

TEST(Check, LengthsOfFiles) {
  const struct {
    const char* generation;
    const char* file;
    int more;
    const char* failed;
  } cases[] = {
      {"1.5", "firmware.man", 1, "structure length "},
      {"1.5", "firmware.man", -1, "structure length "},
      {"1.5", "firmware.bin", 1, "length "},
      {"1.5", "firmware.bin", -1, "length module-hash "},
      {"1.5", kAddonFile, 4096, "length "},
      {"1.5", kAddonFile, -4096, "length module-hash "},
      {"1.8", "firmware.bin", 4096,
       "structure length image-digest image-length "},
      {"1.8", "firmware.bin", -1,
       "structure length module-hash image-digest image-length "},
      {"2.5", "firmware.man", 1, "structure length "},
      {"1.8", "firmware.man.ext", 1, "structure length "},
      {"1.8", "firmware.man.ext", -40, "structure length extended-manifest "},
      {"3.0", "firmware.bin", -4096, "length "},
      {"3.0", "firmware.bin", 1, "pages "},
      {"3.0", "firmware.bin", -16384, "length "},
  };
  for (const auto& c : cases) {
    ImageSample image = image_sample(c.generation);
    std::string& bytes = image.at(c.file);
    bytes.resize(bytes.size() + static_cast<std::size_t>(c.more));
    EXPECT_EQ(c.failed, failed(check(image)))
        << c.generation << ' ' << c.file << ' ' << c.more;
  }
}

// As systems name files that don't tell capitals from small letters.
TEST(Check, CutContentsAreSeenUnderANameInCapitals) {
  ImageSample image = image_sample("1.5");
  std::string contents = image.at("firmware.bin");
  contents.resize(contents.size() - 100);
  std::erase_if(image,
                [](const auto& file) { return file.first != "firmware.man"; });
  image["firmware.BIN"] = contents;
  EXPECT_NE(std::string::npos, failed(check(image)).find("length "));
}

// Not checked is what lacks, with the cure, and none of it fails.
TEST(Check, FilesAloneAndTogether) {
  const auto part = [](const char* generation,
                       const std::vector<std::string>& names) {
    ImageSample image = image_sample(generation);
    std::erase_if(image, [&](const auto& file) {
      return std::ranges::count(names, file.first) == 0;
    });
    return check(image);
  };
  const Checked manifest = part("1.5", {"firmware.man"});
  EXPECT_EQ("", failed(manifest));
  EXPECT_EQ("module-hash extended-manifest package ", gaps(manifest));
  EXPECT_NE(std::string::npos,
            lines_of(manifest, "module-hash")
                .find("base: its contents are not at hand: give the binary, "
                      "NAME.bin\n"));
  // Capitals in its name, as the builder writes it.
  ImageSample no_addon = image_sample("1.5");
  no_addon.at("firmware.man")
      .replace(entries_offset("1.5") + 244, 16, 16, '\xAF');
  no_addon.erase(kAddonFile);
  EXPECT_NE(
      std::string::npos,
      lines_of(check(no_addon), "module-hash").find("give NAME_AFAFAFAF-AFAF"));
  EXPECT_EQ(
      "not checked : give the extended manifest, and the binary or the "
      "manifest of 1.5\n",
      lines_of(manifest, "extended-manifest"));
  EXPECT_EQ("", part("1.8", {"firmware.man"}).summary);
  const Checked bare = part("1.5", {"firmware.bin"});
  ASSERT_EQ(1u, bare.unknown.size());
  EXPECT_NE(std::string::npos, bare.unknown[0].text.find("their manifest"));
  const Checked package = part("1.8", {"firmware.bin", "firmware.pkg"});
  EXPECT_EQ("", failed(package));
  EXPECT_EQ("image-digest image-length extended-manifest ", gaps(package));
  const Checked alone = part("1.8", {"firmware.pkg"});
  EXPECT_EQ(
      "not checked firmware.pkg: none of its files is at hand: give "
      "them, or keep them beside the descriptor\n",
      lines_of(alone, "package"));

  // A joined package stands for the files.
  ImageSample joined = image_sample("1.5");
  joined["joined"] = joined["firmware.bin"] + joined[kAddonFile];
  joined.erase("firmware.bin");
  joined.erase(kAddonFile);
  EXPECT_EQ("", failed(check(joined)));
  EXPECT_EQ("ok joined: 2 modules, 16384 bytes\n",
            lines_of(check(joined), "module-hash"));
  joined["joined"][12288] = 'x';
  EXPECT_EQ("module-hash ", failed(check(joined)));

  // The main binary is found by its length when no descriptor names it.
  ImageSample renamed = image_sample("1.5");
  renamed["other"] = renamed["firmware.bin"];
  renamed.erase("firmware.bin");
  renamed.erase("firmware.pkg");
  EXPECT_NE(std::string::npos,
            lines_of(check(renamed), "module-hash").find("ok other: 1 module"));
  renamed["firmware.bin"] = counting(300);
  EXPECT_EQ("", failed(check(renamed, {}, true)));
}

// A hash that differs is a failure only where the contents surely stand.
TEST(Check, DoubtAboutPlaces) {
  for (const bool has_package : {true, false}) {
    ImageSample image = image_sample("1.5");
    image.at("firmware.man")[644 + 16] = 5;  // pages: one more than there are
    image.at("firmware.bin")[0] = 'x';
    if (!has_package) image.erase("firmware.pkg");
    EXPECT_EQ("length ", failed(check(image)));
    EXPECT_NE(std::string::npos,
              lines_of(check(image), "module-hash")
                  .find("not checked firmware.bin: base: which modules"));
    image.at(kAddonFile)[0] = 'x';
    EXPECT_EQ("length module-hash ", failed(check(image)));
  }
  // Two addons of one name have one file.
  ImageSample image = image_sample("1.5");
  image.at("firmware.man")
      .replace(entries_offset("1.5") + kBaseEntry + 12, 16, 16, 'A');
  EXPECT_NE(std::string::npos,
            lines_of(check(image), "module-hash")
                .find("addon1: another module has the same file"));
}

// The one that reaches furthest meets all that lie in it.
TEST(Check, ASegmentOverTwoOthers) {
  ImageSample image = image_sample("1.8");
  image.at("firmware.bin")[entries_offset("1.8") + 82] = '\x04';  // pages
  EXPECT_NE(std::string::npos,
            lines_of(check(image), "segments-apart")
                .find("text of addon1 and text of base share 4096 bytes"));
}

// Zeros at the end may be those ahead of an addon that was cut off, or its own.
TEST(Check, LengthOf30InDoubt) {
  ImageSample image = image_sample("3.0");
  std::string& binary = image.at("firmware.bin");
  binary[entries_offset("3.0") + kAddonEntry + 85] = '\x50';  // 8192 on
  binary.resize(49152 - 4096);
  binary.resize(49152 + 4096);
  EXPECT_EQ("", failed(check(image)));
  EXPECT_EQ("length ", gaps(check(image)));
  EXPECT_NE(
      std::string::npos,
      lines_of(check(image), "length").find("whether the file was cut or has"));
}

TEST(Check, OneModuleMoreOrLess) {
  for (const int more : {-1, 1}) {
    ImageSample image = image_sample("1.8");
    std::string& extended = image.at("firmware.man.ext");
    extended.resize(more > 0 ? 136 + 40 : 136 - 40);
    if (more > 0) extended[136] = 40;
    extended[4] = static_cast<char>(extended.size());
    extended[12] = static_cast<char>(3 + more);
    EXPECT_EQ("extended-manifest ", failed(check(image))) << more;
  }
  ImageSample image = image_sample("1.8");
  image.at("firmware.man.ext")[60] = 'X';
  EXPECT_NE(std::string::npos,
            lines_of(check(image), "extended-manifest").find(": module 1 is "));
}

// Of a module's index a symbol has the low 8 bits.
TEST(Check, SymbolsOfManyModules) {
  constexpr unsigned kModules = 258;
  Bytes bytes;
  bytes.text("$TM1").u32(52).text("MANY").fill(4).u32(8).fill(16);
  bytes.u32(kModules).fill(12);
  for (unsigned i = 0; i < kModules; ++i) {
    bytes.text("$TME").text("m").fill(7).u16(i + 1).fill(14, 'u').u32(0);
    bytes.fill(48).u8(0x1B).u8(0).u16(1).u32(0x1000 * (i + 1)).u32(0);
    bytes.u32(0xF00).fill(8).u32(0xF00).fill(8);
  }
  // In module 256, which is told as 0, and in none that is told as 1.
  bytes.u32(2).u8(1).u8(0).u16(0).u32(32).u32(0x1000 * 257 + 8);
  bytes.u8(1).u8(1).u16(0).u32(34).u32(0x1000 * 257 + 8);
  bytes.u32(4).text(std::string("a\0b\0", 4)).fill_to(32768);
  const Checked checked = check({{"many.bin", bytes}});
  EXPECT_EQ("FAILED many.bin: b lies outside its segment\n",
            lines_of(checked, "symbol-names"));
}

}  // namespace
}  // namespace tova_fw_builder
