#include "image/kelp15.h"

#include <gtest/gtest.h>

#include <limits>
#include <numeric>
#include <sstream>
#include <vector>

#include "image/small_image.h"
#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

const std::string kTooBig = "Manifest is bigger than MAX of 8kB";
const std::string kRefused =
    "ZelError zelsSHA256Update failed 0xfffffff1 (-15)";

// A manifest file of `length` bytes, each the low byte of its offset, but for
// its first word, `header_len` and `size`.
std::string file_of(std::size_t length, std::uint32_t header_len,
                    std::uint32_t size) {
  std::string bytes(std::max<std::size_t>(length, 28), '\0');
  std::iota(bytes.begin(), bytes.end(), '\0');
  bytes.replace(0, 8, le32(6) + le32(header_len)).replace(24, 4, le32(size));
  return bytes.substr(0, length);
}

std::unique_ptr<ImageManifest> read(const std::string& bytes) {
  return read_kelp15_manifest(
      {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
}

std::string raw(ImageManifest& manifest) {
  std::ostringstream out;
  manifest.write_raw(out);
  return out.str();
}

std::string hash_of(ImageManifest& manifest) {
  std::string hash(32, '\0');
  manifest.compute_hash(reinterpret_cast<std::uint8_t*>(hash.data()));
  return hash;
}

// Seconds as `date -u +%s` gives them. Of the text of a failure nothing is
// left: the number of the error, EOVERFLOW, is larger than it is long.
TEST(Kelp15Manifest, DateInBcdAndDebugBit) {
  EXPECT_EQ(0x80000000u, fill_css_header(4096, true, 0).module_id);
  EXPECT_EQ(0x20270109u, bcd_date(1799452800));
  EXPECT_EQ(0x20261115u, bcd_date(1794787199));
  EXPECT_EQ(0x19991231u, bcd_date(946684799));
  constexpr auto last = std::numeric_limits<std::time_t>::max();
  EXPECT_EQ("", message_of([] { bcd_date(last); }));
}

TEST(Kelp15Manifest, ReadBackIsBounded) {
  const struct {
    std::size_t length;
    std::uint32_t size;
    std::string message;
    std::size_t raw_length;
  } cases[] = {
      {4096, 1024, "no exception", 4096},
      {9000, 2048, "no exception", 8192},
      {100, 1024, "no exception", 4096},  // zero behind its end
      {3, 0, "no exception", 0},
      {9000, 2049, kTooBig, 0},
      {200, 0x40000400, kTooBig, 0},  // its product wraps to 4096 at 32 bits
      // Below 32 words the count of bytes behind the header wraps.
      {8192, 31, "no exception", 124},
      {8193, 31, kTooBig, 0},
      {8193, 0, kTooBig, 0},
      {8193, 32, "no exception", 128},
  };
  for (const auto& c : cases) {
    const std::string file = file_of(c.length, 161, c.size);
    std::string bytes;
    EXPECT_EQ(c.message, message_of([&] { bytes = raw(*read(file)); }));
    EXPECT_EQ(filled(file.substr(0, c.raw_length), c.raw_length), bytes);
  }
}

// Each area is where its setter writes; they stand side by side.
TEST(Kelp15Manifest, AreasOfKeyAndSignature) {
  const auto manifest = read(file_of(4096, 161, 1024));
  std::string expected = file_of(4096, 161, 1024);
  const std::vector<std::uint8_t> area(256, 0xAA);
  manifest->set_modulus(area.data());
  EXPECT_EQ(expected.replace(128, 256, 256, '\xAA'), raw(*manifest));
  manifest->set_exponent(area.data());
  EXPECT_EQ(expected.replace(384, 4, 4, '\xAA'), raw(*manifest));
  manifest->set_signature(area.data());
  EXPECT_EQ(expected.replace(388, 256, 256, '\xAA'), raw(*manifest));
  EXPECT_EQ(manifest->modulus() + 256, manifest->exponent());
  EXPECT_EQ(manifest->exponent() + 4, manifest->signature());
  manifest->set_debug();
  EXPECT_EQ(expected.replace(15, 1, 1, '\x8F'), raw(*manifest));
  EXPECT_EQ(0x17161514u, manifest->date());
}

// python3: f = bytearray(i & 255 for i in range(4096)); f[0:8] = 6, 161 and
// f[24:28] = 1024 as <I; hashlib.sha256(f[:128] + f[644:]).digest()[::-1].
TEST(Kelp15Manifest, HashSkipsKeyAndSignature) {
  EXPECT_EQ(bytes_of("66a5b1625a5dad5e6ba7751bb92b0f68"
                     "0438f475ad3f15764ffba1a8ad4ddde6"),
            hash_of(*read(file_of(4096, 161, 1024))));
}

TEST(Kelp15Manifest, HashedRangeIsBounded) {
  const struct {
    std::uint32_t header_len;
    std::string message;
  } cases[] = {
      {1024, "no exception"},        // equal to the size: nothing follows
      {0, "no exception"},           // the header counts twice
      {0x40000010, "no exception"},  // wraps to an offset of 64
      {1025, kRefused},              // a length of 2^32 - 4
      {0x20000400, kRefused},        // a length of 2^31
      {0x20000401, kTooBig},         // a length of 2^31 - 4
      {0x3FFFFFFF, kTooBig},
  };
  for (const auto& c : cases) {
    const auto manifest = read(file_of(4096, c.header_len, 1024));
    EXPECT_EQ(c.message, message_of([&] { hash_of(*manifest); }));
  }
}

// The file is longer than its size says by the symbol table, 8 bytes here.
TEST(Kelp15Manifest, SizeLimitAndWholePageOfPadding) {
  const struct {
    std::size_t modules, configurations;
    std::string message;
    std::size_t length;  // of the file
    std::string size;    // in the CSS header, words
  } cases[] = {
      {2, 71, "no exception", 4096 + 8, le32(1024)},   // total 4052
      {2, 72, "no exception", 8192 + 8, le32(2048)},   // total 4096: one more
      {2, 165, "no exception", 8192 + 8, le32(2048)},  // total 8188
      {10, 144, kTooBig, 0, ""},                       // total 8192 would fit
  };
  for (const auto& c : cases) {
    CapturedLog log;
    auto map = small_image(kKelp15);
    map->modules.resize(2);
    while (map->modules.size() < c.modules) {
      map->modules.push_back(std::make_unique<FwOutMap::Module>());
    }
    map->modules[0]->mod_cfg.resize(c.configurations);
    map->mod_cfg_total = c.configurations;
    map->exported_symbols.clear();
    const auto image = make_image(std::move(map));
    const auto manifest = image->create_manifest(false, 0);
    std::ostringstream out;
    EXPECT_EQ(c.message,
              message_of([&] { manifest->write(out, image->map()); }));
    EXPECT_EQ(c.length, out.str().size());
    EXPECT_EQ(c.size, filled(out.str(), 28).substr(24, c.size.size()));
  }
}

}  // namespace
}  // namespace tova_fw_builder
