// Files that are not of the image, or of two, and files that lack.
#include <gtest/gtest.h>

#include "inspect/check/checked_sample.h"
#include "support/bytes.h"

namespace tova_fw_builder {
namespace {

// A file that isn't known must not pass for a checked one.
TEST(Check, UnknownFiles) {
  const std::string manifest = image_sample("1.5").at("firmware.man");
  const std::string main = image_sample("1.5").at("firmware.bin");
  const std::string joined = main + image_sample("1.5").at(kAddonFile);
  const std::string noise = counting(300);
  std::string older = manifest;
  older[20] = '\x28';  // its date
  using Case = struct {
    std::vector<std::string> without;
    const char* name;
    std::string bytes;
    bool in_folder;
    const char* failed;
    const char* gaps;  // and troubles: "!"
  };
  const std::vector<std::string> contents = {"firmware.bin", kAddonFile};
  const Case cases[] = {
      // The contents aren't at hand: the manifest tells how long they are.
      {contents, "package.bin", joined, true, "", ""},
      {contents, "package.bin", joined.substr(1), true, "length ",
       "module-hash package "},
      {contents, "package.bin", joined + 'A', true, "length ",
       "module-hash package "},
      {contents, "package.bin", "", true, "length ", "module-hash package "},
      {contents, "package.BIN", noise, false, "length ",
       "module-hash package "},
      {contents, "firmware.d", "a: b\n", false, "", "!module-hash package "},
      {contents, "flash.bin", noise + manifest, false, "",
       "!module-hash package "},
      {contents, "bank_a", noise, true, "", "module-hash package "},
      {contents, "flash.bin", noise + manifest, true, "",
       "module-hash package "},
      // They are: what begins like them is a package that was cut or has grown.
      {{}, "package.bin", joined.substr(0, 8193), true, "length ", ""},
      {{}, "package.bin", joined + 'A', true, "length ", ""},
      {{}, "package.bin", joined.substr(0, 255), true, "", "structure "},
      {{}, "copy.bin", main, true, "", ""},
      {{}, "package.bin", main, false, "", ""},
      {{},
       "even.bin",
       main.substr(0, 8192),
       true,
       "",
       "structure "},  // nothing but one byte
      {{}, "like.bin", main.substr(0, 8192) + noise, true, "", "structure "},
      {{}, "other.Bin", noise, true, "", "structure "},
      {{}, "other.bin", noise, false, "", "!"},
      {{}, "flash.bin", main + manifest, true, "", ""},
      {{}, "flash.img", noise + manifest, false, "", ""},
      // A flash image of another build.
      {{}, "flash.img", noise + older, true, "", "structure "},
      {{}, "flash.img", noise + older + manifest, false, "", "structure "},
      {{}, "bank_a", noise, true, "", ""},
      {{}, "word", "8 bytes!", false, "", "!"},
      {{}, "notes.txt", "Notes\n", true, "", ""},
      // What is named as a part of the image has to be one.
      {{}, "other.man.signed", noise, true, "", "!"},
      {{"firmware.pkg"}, "firmware.pkg", "", true, "", "!package "},
      {{"firmware.pkg"}, "firmware.pkg", "ver 1\n", true, "", "!package "},
      {{"firmware.pkg"}, "firmware.pkg", "", false, "", "!package "},
      {{"firmware.man.ext"},
       "firmware.man.ext",
       "x",
       true,
       "",
       "!extended-manifest "},
  };
  for (const Case& c : cases) {
    ImageSample image = image_sample("1.5");
    for (const std::string& name : c.without) image.erase(name);
    image[c.name] = c.bytes;
    const Checked checked = check(image, {}, c.in_folder);
    std::string told = checked.unknown.empty() ? "" : "!";
    told += gaps(checked);
    EXPECT_EQ(c.failed, failed(checked)) << c.name << c.bytes.size();
    EXPECT_EQ(c.gaps, told) << c.name << c.bytes.size();
  }
  // The manifests of 3.0 alone are empty.
  ImageSample image = image_sample("3.0");
  image["firmware.man.ext"] = "";
  EXPECT_TRUE(check(image, {}, true).unknown.empty());
  image["firmware.man"] = std::string(8, '\0');
  EXPECT_EQ(1u, check(image, {}, true).unknown.size());
  image["firmware.man"] = "";
  image["firmware.pkg"] = "";
  const Checked empty = check(image, {}, true);
  ASSERT_EQ(1u, empty.unknown.size());
  EXPECT_EQ("an empty file", empty.unknown[0].text);
  image["b.bin"] = "";
  EXPECT_EQ(2u, check(image).unknown.size());
  // Without a header, structures are beside nothing.
  EXPECT_EQ(1u, check({{"flash.img", noise + manifest}}).unknown.size());
  // With the joined package there a file beside it may still be that of another
  // build.
  image = image_sample("1.5");
  image["package.bin"] = joined;
  image["other.bin"] = noise;
  EXPECT_EQ("structure ", gaps(check(image, {}, true)));
  EXPECT_NE(std::string::npos, lines_of(check(image, {}, true), "structure")
                                   .find("not checked other.bin: nothing"));
  // Named with its line, unless its length tells more.
  EXPECT_EQ(
      "p.bin: 5 bytes, and the contents have 12288 bytes, or with the "
      "addons 16384\n",
      lines_of(check({{"firmware.man", manifest},
                      {"firmware.pkg", image_sample("1.5").at("firmware.pkg")},
                      {"p.bin", "bytes"}}),
               "length")
          .substr(35));
}

// What a glob finds beside an image has nothing to be checked, and is named.
TEST(Check, FilesBesideAnImage) {
  const struct {
    const char* name;
    std::string bytes;
    const char* told;  // "" if it is unknown
  } cases[] = {
      {"firmware.d", "binary_parts: a.def\na.def: \n", "a dependency file"},
      {"firmware.xml", "<memory_footprint elf_name=\"firmware\">\n",
       "a memory description"},
      {"manifest.c", "unsigned char rawData[8] = { \n", "a C array"},
      {"base.elf", "\177ELF\1\1\1", "an ELF"},
      {"firmware.elfs", "a.elf\na.sections\na.symbols\n", "an ELF list"},
      {"BANK_A.HEX", "0011223344556677\n", "a memory file"},
      {"check.json", "", "a report"},
      {"firmware.elfs", std::string("a\0b", 3), ""},
      {"firmware.elfs", "a\177b\n", ""},
      {"firmware.d", "", ""},
      {"notes.txt", "Notes\n", ""},
      {"X.MAN", "binary_parts: a.def\n", ""},  // it has to be a manifest
  };
  for (const auto& c : cases) {
    ImageSample image = image_sample("1.8");
    image[c.name] = c.bytes;
    const Checked named = check(image);
    EXPECT_EQ("", failed(named) + gaps(named)) << c.name;
    EXPECT_EQ(*c.told == 0 ? 1u : 0u, named.unknown.size()) << c.name;
    const std::string line = std::string("not checked ") + c.name + ": " +
                             c.told + ", in which nothing is to be checked\n";
    EXPECT_EQ(*c.told != 0,
              lines_of(named, "structure").find(line) != std::string::npos)
        << lines_of(named, "structure");
  }
}

// The words of 8 bytes of one parity, as docs/file-formats.md tells of split.
std::string bank(const std::string& bytes, bool is_odd) {
  std::string words;
  for (std::size_t at = is_odd ? 8 : 0; at < bytes.size(); at += 16) {
    words += bytes.substr(at, 8);
  }
  return words;
}

// A bank of a binary begins like one. Where the other half or the whole isn't
// at hand, it may as well be the image's own binary that was damaged.
TEST(Check, MemoryBanksAreNoBinaries) {
  for (const char* generation : {"1.8", "3.0"}) {
    const ImageSample image = image_sample(generation);
    const std::string& binary = image.at("firmware.bin");
    ImageSample with_banks = image;
    with_banks["bank_a.bin"] = bank(binary, false);
    with_banks["bank_b.bin"] = bank(binary, true);
    for (const bool in_folder : {true, false}) {
      const Checked checked = check(with_banks, {}, in_folder);
      EXPECT_EQ("", failed(checked) + gaps(checked));
      EXPECT_TRUE(checked.unknown.empty());
      for (const char* line :
           {"bank_a.bin: the even words of firmware.bin, as split deals",
            "bank_b.bin: the odd words of firmware.bin, as split deals"}) {
        EXPECT_NE(std::string::npos, lines_of(checked, "structure").find(line));
      }
    }
    // Another one's, by itself, in the place of the binary, and as a name that
    // has to be of the image.
    std::string other = with_banks["bank_a.bin"];
    other.back() = 'x';
    // A whole one whose count of modules was damaged is none.
    ImageSample damaged = image;
    damaged["old.bin"] = binary;
    damaged["old.bin"].replace(entries_offset(generation) - 16, 4, 4, '\0');
    EXPECT_FALSE(holds(check(damaged, {}, true))) << generation;
    const struct {
      const char* name;
      bool in_folder;
      const char* without;
      bool fails;
      const char* gaps;
    } cases[] = {
        {"bank_a.bin", true, "", false, "structure "},
        {"bank_a.bin", false, "", true, ""},
        {"bank_a.bin", true, "firmware.bin", true, ""},
        {"firmware.1.bin", true, "", true, ""},
        {kAddonFile, true, "", true, ""},
    };
    for (const auto& c : cases) {
      ImageSample files = image;
      files.erase(c.without);
      files[c.name] = other;
      const Checked checked = check(files, {}, c.in_folder);
      EXPECT_EQ(c.fails, !holds(checked)) << generation << c.name;
      if (!c.fails) {
        EXPECT_EQ(c.gaps, gaps(checked));
      }
    }
  }
  // The bytes behind the last whole word are the odd bank's, if it lacks one.
  for (const std::size_t length : {300u, 303u, 296u, 304u, 311u}) {
    ImageSample image = image_sample("1.8");
    image["notes.bin"] = counting(length);
    std::string whole = counting(length);
    whole.resize(length / 8 * 8 + (length / 8 % 2 == 0 ? 0 : length % 8));
    std::string odd = bank(whole, true);
    odd.resize((length / 8 + 1) / 2 * 8);
    image["odd"] = odd;
    EXPECT_NE(std::string::npos,
              lines_of(check(image), "structure").find("odd words of notes"))
        << length;
    image["odd"].back() = 'x';
    EXPECT_EQ(std::string::npos,
              lines_of(check(image), "structure").find("odd words of notes"))
        << length;
  }
}

// What is of two builds or two generations is no image.
TEST(Check, FilesOfTwoImages) {
  const auto file = [](const char* generation, const char* name) {
    return image_sample(generation).at(name);
  };
  std::string other_date = file("1.5", "firmware.man");
  other_date[20] = '\x28';
  std::string other_version = file("1.5", "firmware.man");
  other_version[entries_offset("1.5") - 28] = '\x02';
  std::string other_css = file("1.5", "firmware.man");
  other_css[36] = '\x02';
  std::string other_bin = file("1.8", "firmware.bin");
  other_bin[30000] = 'x';
  const std::string front(8064, 's');
  const std::string binary = file("1.8", "firmware.bin");
  const struct {
    std::string a;
    std::string b;
    const char* told;  // in the line of the second file
  } cases[] = {
      {file("1.5", "firmware.man"), binary, "these are of two generations"},
      {file("1.5", "firmware.man"), file("3.0", "firmware.bin"),
       "generation 3.0, and a is of generation 1.5"},
      {file("1.8", "firmware.man"), file("1.5", "firmware.man"),
       "of two generations"},
      {file("1.8", "firmware.man"), file("2.5", "firmware.man"),
       "generation 2.5, and a is of generation 1.8"},
      {file("3.0", "firmware.bin"), file("2.5", "firmware.man"),
       "of two generations"},
      {file("3.0", "firmware.bin"), binary,
       "generation 1.8 or 2.5, and a is of generation 3.0"},
      {binary, file("1.8", "firmware.man"), ""},
      {binary, file("2.5", "firmware.man"), ""},
      {binary, other_bin, "from 0x7530 on it isn't that of a"},
      {binary, binary, ""},
      // A signer's part is no difference.
      {binary, front + binary, ""},
      {binary, binary.substr(0, 40960), "from 0xa000 on"},
      {front + binary, binary.substr(0, 40960), "from 0xa000 on"},
      {file("1.5", "firmware.man"), other_date, ""},
      {file("1.5", "firmware.man"), other_version, "from 0x29c on"},
      {file("1.5", "firmware.man"), other_css, "from 0x24 on"},
      {file("1.8", "firmware.man.ext"),
       file("1.8", "firmware.man.ext").substr(0, 96), "from 0x60 on"},
  };
  for (const auto& c : cases) {
    const std::string lines =
        lines_of(check({{"a", c.a}, {"b", c.b}}), "structure");
    EXPECT_EQ(*c.told != 0, lines.find(": these are ") != lines.npos) << lines;
    EXPECT_NE(std::string::npos, lines.find(c.told)) << lines;
  }
}

// A descriptor that lacks addons makes a package that lacks them.
TEST(Check, AddonsWithoutALine) {
  for (const char* generation : {"1.5", "1.8", "3.0"}) {
    ImageSample image = image_sample(generation);
    std::string& package = image.at("firmware.pkg");
    package.resize(package.rfind("bin /"));
    EXPECT_EQ(
        "FAILED firmware.pkg: addon1, 41414141-4141-4141-4141-414141414141, "
        "has no line: the addon is missing\n",
        lines_of(check(image), "package"));
  }
  // Behind the first addon, the header of 1.8 doesn't tell base modules from
  // addons; the files of 1.5 do.
  const struct {
    const char* generation;
    unsigned char type;
    const char* result;
  } cases[] = {
      {"1.8", 0x01, "not checked"},
      {"1.8", 0x11, "FAILED"},  // what starts by itself is an addon
      {"1.8", 0x81, "ok"},      // a library
      {"1.8", 0x00, "ok"},      // built in
  };
  for (const auto& c : cases) {
    ImageSample image = image_sample(c.generation);
    const std::size_t entries = entries_offset(c.generation);
    std::string& binary = image.at("firmware.bin");
    const std::string addon = binary.substr(entries + 2 * kEntry, kEntry);
    const std::string built_in = binary.substr(entries + kEntry, kEntry);
    binary.replace(entries + kEntry, kEntry, addon);
    binary.replace(entries + 2 * kEntry, kEntry, built_in);
    binary[entries + 2 * kEntry + 28] = static_cast<char>(c.type);
    std::string& package = image.at("firmware.pkg");
    package.replace(package.find("base in"), 7, "base");
    const std::string lines = lines_of(check(image), "package");
    EXPECT_TRUE(lines.starts_with(c.result)) << lines;
  }
}

}  // namespace
}  // namespace tova_fw_builder
