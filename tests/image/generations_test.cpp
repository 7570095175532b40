// A small image through each generation, against bytes laid out by hand. The
// digests are those that python's hashlib gives for the expected bytes.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "image/image.h"
#include "image/small_image.h"
#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

using std::string_literals::operator""s;

const std::string kAddonFile = "_03020100-0504-0706-0809-0a0b0c0d0e0f.bin";

const std::string kExtended = bytes_of(R"(
    24544531 a4000000 01000000 03000000   # 16 + 40 + 68 + 40 = 164 bytes
    28000000 67452301ab89efcd0123456789abcdef
    0000 0000 0000 0000 03000000 00000000 0000 0000
    44000000 000102030405060708090a0b0c0d0e0f
    0a00 0000 0000 0100 1b000000 00000000 0100 0100
    0100 0203                             # sched_caps, then a pin
    0100 0000 02000000 30000000 0400 0000 05000000 06000000
    28000000 ffffffffffffffffffffffffffffffff
    0000 0000 0000 0000 1b000000 00000000 0000 0000)");

struct Output {
  std::string binary, manifest, extended, addon, log;
};

std::fstream create(const std::string& path) {
  return std::fstream(
      path, std::ios::in | std::ios::out | std::ios::trunc | std::ios::binary);
}

Output build(std::uint32_t generation, std::uint32_t css_header_size) {
  TempDir dir;
  CapturedLog log(3);
  const auto image = make_image(small_image(generation));
  auto binary = create(dir.file("fw.bin"));
  image->write(binary, dir.file("fw"), css_header_size);
  binary.close();
  const auto manifest = image->create_manifest(false, 0x1122);
  std::ostringstream file, extended;
  manifest->write(file, image->map());
  manifest->write_extended(extended, image->map());
  return {read_file(dir.file("fw.bin")), file.str(), extended.str(),
          read_file(dir.file("fw" + kAddonFile)), log.text()};
}

void expect_logged(const std::string& log, const std::string& text) {
  EXPECT_NE(std::string::npos, log.find(text)) << text;
}

// Offsets of addon segments follow those of the base module, though they stand
// in a file of their own. The symbol table isn't part of the manifest's size:
// the padding is 4096 - (644 + 52 + 3 * 116 + 44).
TEST(Generations, Kelp15) {
  const Output output = build(kKelp15, 0);
  EXPECT_TRUE(stored_pages().substr(0, 4096) == output.binary);
  EXPECT_TRUE(stored_pages().substr(4096) == output.addon);
  const std::string css =
      bytes_of("06000000 a1000000 00000100 00000000 5c7a0000") +
      output.manifest.substr(20, 4) +
      bytes_of("00040000 40000000 40000000 01000000");
  EXPECT_EQ(filled(css, 644) + expected_tables(2, {0x1000, 0x2000, 0x3000}) +
                std::string(3008, '\0'),
            output.manifest);
  EXPECT_EQ(kExtended, output.extended);
}

void expect_padded(std::uint32_t generation, std::uint32_t css,
                   const std::string& manifest,
                   const std::string& metadata_hash) {
  const Output output = build(generation, css);
  const std::string ahead = std::string(8192 - css, '\0') +
                            expected_tables(11, {0x8000, 0x9000, 0xa000});
  EXPECT_TRUE(filled(ahead, 32768 - css) + stored_pages() == output.binary);
  EXPECT_EQ(bytes_of(manifest), output.manifest);
  EXPECT_EQ(kExtended, output.extended);
  expect_logged(output.log, "Metadata hash\n" + metadata_hash);
}

// The offsets are those of the final image, with the CSS part in front.
TEST(Generations, Kelp18AndKelp25) {
  const std::string zeros(32, '0');
  expect_padded(
      kKelp18, 4096,
      "11000000 60000000 22110000 000000000000000000000000" + zeros +
          "db138c95485f99fc2c232f41973f319ffe0ff2732c2d56a52afd719253580633"
          "00200000 00c00000" +
          zeros,
      "6b 08 2b 3c 9e 33 18 8c ");
  expect_padded(
      kKelp25, 0,
      "11000000 70000000 22110000 000000000000000000000000" + zeros +
          "9835d3ef386dd5a93cdb03e290960fd0e3dc6ae434cf537c1cafca0d069165ae"
          "3efa3feabccd42a436ad4fab3da690e0 00200000 00d00000" +
          zeros,
      "3a 54 ff c9 23 c3 06 8b ");
}

// The header shows the map as it stood before the contents were written.
TEST(Generations, Kelp30) {
  const Output output = build(kKelp30, 4096);
  const std::string no_hash(32, '\0');
  EXPECT_TRUE(
      filled(expected_tables(8, {0x8000, 0x8000, 0x8000}, no_hash, no_hash),
             32768) +
          stored_pages() ==
      output.binary);
  EXPECT_EQ("", output.manifest);
  EXPECT_EQ("", output.extended);
  expect_logged(output.log, "    name                TOVAFW\0\0\n"s);
  expect_logged(output.log,
                "aff_mask 3 ep a0001004 cfg_off 2 cfg_cnt 1 "
                "inst_max_cnt 2 domain_ll 1 domain_dp 0 "
                "domain_rtos 1 core_type a5 inst_stack_size 1\n");
  expect_logged(output.log,
                "par_0 1 par_1 2 par_2 3 par_3 4 is_bytes 5 cps 6 "
                "ibs 7 obs 8 mod_flags 9 cpc 10 obls 11\n");
}

// The room for the contents wraps at 32 bits, here to 65536: without contents
// the file still has that length. The page count is summed up in 64 bits.
TEST(Generations, HugeCssSizeWraps) {
  TempDir dir;
  CapturedLog log(3);
  const auto image = make_image(small_image(kKelp18));
  image->map().modules.resize(1);
  image->map().modules[0]->groups.clear();
  auto binary = create(dir.file("fw.bin"));
  image->write(binary, dir.file("fw"), 0xFFFF8000);
  binary.close();
  EXPECT_EQ(65536u, std::filesystem::file_size(dir.file("fw.bin")));
  expect_logged(log.text(),
                "kELP1.8: Writing initial padding (size 0x10000)\n"
                "kELP1.8: Writing content\n");
  expect_logged(log.text(), "    preload_page_count  100008\n");
}

}  // namespace
}  // namespace tova_fw_builder
