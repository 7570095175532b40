// Which bytes are hashed where the header tells it in an unusual way, and what
// is said of several files.
#include <gtest/gtest.h>

#include "inspect/check/checked_sample.h"
#include "support/bytes.h"

namespace tova_fw_builder {
namespace {

TEST(ContentsPlan, WhichBytesAreHashed) {
  constexpr std::size_t kText = 80;  // in the base's entry
  constexpr std::size_t kRodata = 92;
  constexpr std::size_t kFileOff = 8;
  const struct {
    std::vector<std::pair<std::size_t, std::string>> patches;
    const char* lines;
  } cases[] = {
      // The constants ahead of the text: the same bytes in the same order.
      {{{kText + kFileOff, le32(0x9000)}, {kRodata + kFileOff, le32(0x8000)}},
       "ok firmware.bin: 2 modules, 16384 bytes\n"},
      // Contents that aren't loaded: behind them others may be stored.
      {{{kText, "\x1B"}},
       "not checked firmware.bin: base: the header doesn't tell where its text "
       "stands, whose first section isn't loaded\n"
       "ok firmware.bin: 1 module, 4096 bytes\n"},
  };
  for (const auto& c : cases) {
    ImageSample image = image_sample("1.8");
    for (const auto& [offset, bytes] : c.patches) {
      image.at("firmware.bin")
          .replace(entries_offset("1.8") + offset, bytes.size(), bytes);
    }
    EXPECT_EQ(c.lines, lines_of(check(image), "module-hash"));
  }
}

// The addon is loaded two pages farther on: as many zeros stand ahead of it.
TEST(Check, LengthOf30WithZerosAheadOfAnAddon) {
  ImageSample image = image_sample("3.0");
  std::string& binary = image.at("firmware.bin");
  binary.replace(entries_offset("3.0") + 2 * kEntry + 84, 4, le32(0x10005000));
  binary.insert(32768 + 12288, 8192, '\0');
  EXPECT_EQ(
      0u,
      lines_of(check(image), "length").find("ok firmware.bin: 57344 bytes\n"));
  // A library has no zeros ahead, so these are told by nothing.
  ImageSample library = image;
  library.at("firmware.bin")[entries_offset("3.0") + 2 * kEntry + 28] |= '\x80';
  EXPECT_NE(std::string::npos, gaps(check(library)).find("length "));
  binary.resize(53249);  // one byte of the addon is left
  EXPECT_EQ(0u, lines_of(check(image), "length")
                    .find("FAILED firmware.bin: 53249 bytes, and its segments "
                          "with the zeros between them have 57344\n"));
}

// A module behind the addon whose place says nothing: without a line of its own
// in the descriptor it stands in the main binary, behind the base.
TEST(Check, TheDescriptorTellsWhoStandsWhere) {
  for (const bool has_package : {true, false}) {
    ImageSample image = image_sample("1.5");
    std::string& manifest = image.at("firmware.man");
    const std::size_t in = entries_offset("1.5") + kEntry;
    const std::size_t addon = in + kEntry;
    std::string late = manifest.substr(addon, kEntry);
    late.replace(4, 6, "late\0\0", 6).replace(12, 16, 16, 'L');
    late.replace(88, 4, le32(0x00FFF000));
    manifest.replace(in, kEntry, manifest.substr(addon, kEntry));
    manifest.replace(addon, kEntry, late);
    manifest[644 + 16] = 5;  // pages: one more
    image.at("firmware.bin") += image.at(kAddonFile);
    std::string& package = image.at("firmware.pkg");
    package.replace(package.find("base in"), 7, "base");
    image.erase("firmware.man.ext");
    if (!has_package) image.erase("firmware.pkg");
    EXPECT_EQ("", failed(check(image)));
    image.at("firmware.bin")[12288] = 'x';
    EXPECT_EQ(has_package ? "module-hash " : "", failed(check(image)))
        << lines_of(check(image), "module-hash");
  }
}

// Two folders of one image: a damaged file doesn't hide behind a whole one.
TEST(Check, EachOfTwoFilesIsHashed) {
  for (const std::string name : {"firmware.bin", kAddonFile}) {
    for (const bool has_package : {true, false}) {
      const std::string other = "z/" + name;
      ImageSample image = image_sample("1.5");
      if (!has_package) image.erase("firmware.pkg");
      image[other] = image.at(name);
      const Checked both = check(image);
      EXPECT_EQ("", failed(both));
      EXPECT_TRUE(both.unknown.empty());
      EXPECT_NE(std::string::npos,
                lines_of(both, "module-hash").find("ok " + other + ": 1 mod"))
          << lines_of(both, "module-hash");
      image[other].back() = 'x';
      EXPECT_EQ("module-hash ", failed(check(image))) << other;
      if (!has_package) continue;
      image[other].pop_back();
      EXPECT_EQ("length module-hash ", failed(check(image))) << other;
    }
  }
}

// An addon with zeroed data alone has no contents that could lack.
TEST(Check, AddonWithoutContents) {
  const std::string nothing = bytes_of(
      "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
  CheckOptions release;
  release.release = true;
  for (const bool is_hash : {true, false}) {
    ImageSample image = image_sample("1.5");
    std::string& manifest = image.at("firmware.man");
    const std::size_t addon = entries_offset("1.5") + 2 * kEntry;
    manifest.replace(addon + 32, 32, is_hash ? nothing : std::string(32, 'x'));
    manifest.replace(addon + 80, 2, "\x02\x02");  // bss, without contents
    manifest.replace(addon + 88, 4, le32(0));
    image["package.bin"] = image.at("firmware.bin");
    image.erase("firmware.bin");
    image.erase(kAddonFile);
    EXPECT_EQ(is_hash,
              lines_of(check(image, release), "module-hash").find("FAILED") ==
                  std::string::npos)
        << lines_of(check(image, release), "module-hash");
    // Addons without contents make no package longer.
    image["package.bin"] += 'x';
    EXPECT_EQ(std::string::npos,
              lines_of(check(image), "length").find("with the addons"));
    // Nor is the main binary a package, so that another one is looked for.
    image["package.bin"].pop_back();
    image["firmware.bin"] = "x";
    image.erase("firmware.pkg");
    EXPECT_EQ(std::string::npos, failed(check(image, {}, true)).find("length"));
  }
}

TEST(Check, EachFileIsNamed) {
  const std::string binary = image_sample("1.8").at("firmware.bin");
  EXPECT_EQ(
      "ok a.bin: 2 modules, 16384 bytes\nok b.bin: 2 modules, 16384 bytes\n",
      lines_of(check({{"a.bin", binary}, {"b.bin", binary}}), "module-hash"));
}

// Any byte at the signature's place makes it signed.
TEST(Check, SummaryIsThatOfTheSignedManifest) {
  const std::string manifest = image_sample("1.5").at("firmware.man");
  std::string with_signature = manifest;
  with_signature[400] = 'x';
  EXPECT_NE(std::string::npos,
            check({{"a.man", manifest}, {"b.man", with_signature}})
                .summary.find("  signed release "));
}

}  // namespace
}  // namespace tova_fw_builder
