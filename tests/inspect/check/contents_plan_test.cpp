// Where contents are looked for when a header tells it in an unusual way, and
// what is said of several files. Places count from the first module's entry.
#include <gtest/gtest.h>

#include "inspect/check/checked_sample.h"
#include "support/bytes.h"

namespace tova_fw_builder {
namespace {

struct Patch {
  std::size_t offset;
  std::string bytes;
};

constexpr std::size_t kHeader = std::size_t{0} - 52;  // ahead of the entries
constexpr std::size_t kUuid = 12;
constexpr std::size_t kText = 80;  // of the base: flags, type, pages
constexpr std::size_t kRodata = 92;
constexpr std::size_t kFileOff = 8;
constexpr std::size_t kAddonAddress = 2 * kEntry + 84;

ImageSample patched(const std::string& generation,
                    const std::vector<Patch>& patches) {
  ImageSample image = image_sample(generation);
  std::string& header =
      image.at(generation == "1.5" ? "firmware.man" : "firmware.bin");
  for (const Patch& patch : patches) {
    header.replace(entries_offset(generation) + patch.offset,
                   patch.bytes.size(), patch.bytes);
  }
  return image;
}

TEST(ContentsPlan, WhichBytesAreHashed) {
  const struct {
    const char* generation;
    std::vector<Patch> patches;
    const char* lines;
  } cases[] = {
      // The constants ahead of the text: the same bytes in the same order.
      {"1.8",
       {{kText + kFileOff, le32(0x9000)}, {kRodata + kFileOff, le32(0x8000)}},
       "ok firmware.bin: 2 modules, 16384 bytes\n"},
      // Contents that aren't loaded; behind them others may be stored.
      {"1.8",
       {{kText, "\x1B"}},
       "not checked firmware.bin: base: the header doesn't tell where its text "
       "stands, whose first section isn't loaded\n"
       "ok firmware.bin: 1 module, 4096 bytes\n"},
      // Both modules ask for the addon's file.
      {"1.5",
       {{kUuid, std::string(16, 'A')}},
       "FAILED firmware_41414141-4141-4141-4141-414141414141.bin: base: the "
       "file ends ahead of its contents\n"
       "not checked firmware_41414141-4141-4141-4141-414141414141.bin: addon1: "
       "another module has the same file\n"},
  };
  for (const auto& c : cases) {
    const Checked checked = check(patched(c.generation, c.patches));
    EXPECT_EQ(c.lines, lines_of(checked, "module-hash"));
  }
}

// The descriptor tells which module is the addon, and the others don't fill the
// pages that the header counts: 5, of which one is the manifest's.
TEST(ContentsPlan, DifferenceIsNoProofWhereTheLengthsDisagree) {
  for (const bool agree : {true, false}) {
    ImageSample image = patched("1.5", {{kHeader + 16, le32(agree ? 4 : 5)}});
    image.at("firmware.bin")[0] = 'x';
    const std::string lines = lines_of(check(image), "module-hash");
    EXPECT_EQ(0u, lines.find(agree ? "FAILED firmware.bin: base: "
                                   : "not checked firmware.bin: base: which "
                                     "modules stand in the binary isn't known"))
        << lines;
  }
}

// The addon is loaded two pages farther on, so that as many zeros stand ahead
// of it. Where the file ends with them, they may be anything's.
TEST(ContentsPlan, ZerosAheadOfAnAddon) {
  ImageSample image = patched("3.0", {{kAddonAddress, le32(0x10005000)}});
  const std::string whole =
      image.at("firmware.bin").insert(32768 + 12288, 8192, '\0');
  const struct {
    std::size_t length;
    const char* line;
  } cases[] = {
      {57344, "ok firmware.bin: 57344 bytes\n"},
      {53249,
       "FAILED firmware.bin: 53249 bytes, and its segments with the zeros "
       "between them have 57344\n"},
      {53248,
       "not checked firmware.bin: 4096 bytes more than its segments have: "},
  };
  for (const auto& c : cases) {
    image.at("firmware.bin") = whole.substr(0, c.length);
    const std::string lines = lines_of(check(image), "length");
    EXPECT_NE(std::string::npos, lines.find(c.line)) << lines;
  }
}

TEST(Check, EachFileIsNamed) {
  const std::string binary = image_sample("1.8").at("firmware.bin");
  const Checked checked = check({{"a.bin", binary}, {"b.bin", binary}});
  EXPECT_EQ(
      "ok a.bin: 2 modules, 16384 bytes\nok b.bin: 2 modules, 16384 bytes\n",
      lines_of(checked, "module-hash"));
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
