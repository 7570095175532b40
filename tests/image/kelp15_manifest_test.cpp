#include "image/kelp15_manifest.h"

#include <gtest/gtest.h>

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
  std::istringstream stream(bytes);
  return read_kelp15_manifest(stream);
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

TEST(Kelp15Manifest, ReadBackIsBounded) {
  struct Case {
    std::size_t length;
    std::uint32_t size;
    std::string message;
    std::size_t raw_length;
  };
  const Case cases[] = {
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
  for (const Case& expected : cases) {
    SCOPED_TRACE(expected.length);
    const std::string file = file_of(expected.length, 161, expected.size);
    std::string bytes;
    EXPECT_EQ(expected.message, message_of([&] { bytes = raw(*read(file)); }));
    EXPECT_EQ(filled(file.substr(0, expected.raw_length), expected.raw_length),
              bytes);
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
  const auto manifest = read(file_of(4096, 161, 1024));
  const std::string expected = bytes_of(
      "66a5b1625a5dad5e6ba7751bb92b0f68"
      "0438f475ad3f15764ffba1a8ad4ddde6");
  EXPECT_EQ(expected, hash_of(*manifest));
  manifest->signature()[255] ^= 1;
  manifest->modulus()[0] ^= 1;
  EXPECT_EQ(expected, hash_of(*manifest));
  manifest->signature()[256] ^= 1;  // the first byte behind the CSS part
  EXPECT_NE(expected, hash_of(*manifest));
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
  for (const auto& expected : cases) {
    const auto manifest = read(file_of(4096, expected.header_len, 1024));
    EXPECT_EQ(expected.message, message_of([&] { hash_of(*manifest); }))
        << expected.header_len;
  }
}

// The file is longer than its size says by the symbol table, 8 bytes here.
TEST(Kelp15Manifest, SizeLimitAndWholePageOfPadding) {
  const struct {
    std::size_t modules;
    std::size_t configurations;
    std::string message;
    std::size_t length;  // of the file
    std::uint32_t size;  // in the CSS header, words
  } cases[] = {
      {2, 71, "no exception", 4096 + 8, 1024},   // total 4052
      {2, 72, "no exception", 8192 + 8, 2048},   // total 4096: a page more
      {2, 165, "no exception", 8192 + 8, 2048},  // total 8188
      {10, 144, kTooBig, 0, 0},                  // total 8192 would just fit
  };
  for (const auto& expected : cases) {
    CapturedLog log;
    auto map = small_image(kKelp15);
    map->modules.resize(2);
    while (map->modules.size() < expected.modules) {
      map->modules.push_back(std::make_unique<FwOutMap::Module>());
    }
    map->modules[0]->mod_cfg.resize(expected.configurations);
    map->mod_cfg_total = expected.configurations;
    map->exported_symbols.clear();
    const auto image = make_image(std::move(map));
    const auto manifest = image->create_manifest(false, 0);
    std::ostringstream out;
    EXPECT_EQ(expected.message,
              message_of([&] { manifest->write(out, *image); }));
    EXPECT_EQ(expected.length, out.str().size());
    if (expected.length > 0) {
      EXPECT_EQ(le32(expected.size), out.str().substr(24, 4));
    }
  }
}

}  // namespace
}  // namespace tova_fw_builder
