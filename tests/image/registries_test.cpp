#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <sstream>

#include "image/image.h"
#include "image/small_image.h"
#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

TEST(Registry, UnknownKeys) {
  TempDir dir;
  CapturedLog log;
  for (const std::uint32_t key : {0u, 0x10006u, 0x30001u}) {
    EXPECT_EQ("Unrecognized binary version",
              message_of([&] { make_image(small_image(key)); }));
  }
  EXPECT_EQ("", log.text());
  // Empty, a first word of 17 as 1.8 writes it, and one with a high byte.
  for (const auto* hex : {"", "11000000 60000000", "06000001"}) {
    const std::string path = dir.write("manifest", bytes_of(hex));
    EXPECT_EQ("Unrecognized module type",
              message_of([&] { read_manifest(path); }));
  }
}

// It is of 1.5 by what it lacks, and holds nothing: the digest is that of 128
// zeros (sha256sum), last byte first.
TEST(Registry, LessThanAWordCountsAsEmpty) {
  TempDir dir;
  CapturedLog log;
  const auto manifest = read_manifest(dir.write("manifest", bytes_of("0600")));
  std::string digest(32, ' ');
  manifest->compute_hash(reinterpret_cast<std::uint8_t*>(digest.data()));
  std::reverse(digest.begin(), digest.end());
  EXPECT_EQ(
      bytes_of(
          "38723a2e5e8a17aa7950dc008209944e898f69a7bd10a23c839d341e935fd5ca"),
      digest);
}

// Nothing is read, and nothing that signing does has an effect.
TEST(Registry, FirstWord4IsAnEmptyManifest) {
  TempDir dir;
  CapturedLog log;
  const std::string path = dir.write("manifest", bytes_of("04"));
  const auto manifest = read_manifest(path);
  EXPECT_EQ("Reading manifest from: " + path + "\n", log.text());
  EXPECT_EQ(nullptr, manifest->modulus());
  EXPECT_EQ(nullptr, manifest->exponent());
  EXPECT_EQ(nullptr, manifest->signature());
  EXPECT_EQ(0u, manifest->module_type + manifest->date());
  std::array<std::uint8_t, 256> bytes{7};
  manifest->set_modulus(bytes.data());
  manifest->set_exponent(bytes.data());
  manifest->set_signature(bytes.data());
  manifest->compute_hash(bytes.data());
  EXPECT_EQ((std::array<std::uint8_t, 256>{7}), bytes);
  const auto image = make_image(small_image(kKelp30));
  std::ostringstream out;
  manifest->write(out,
                  image->map());  // a manifest of 1.8 would write here
  manifest->write_raw(out);
  EXPECT_EQ("", out.str());
}

}  // namespace
}  // namespace tova_fw_builder
