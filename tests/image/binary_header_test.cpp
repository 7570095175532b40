#include "image/binary_header.h"

#include <gtest/gtest.h>

#include <sstream>

#include "image/small_image.h"
#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

constexpr std::size_t kAddonFileOff = 52 + 116 + 80 + 8;

// The header as bytes; the log, if wanted, goes to `text`.
std::string write(const FwOutMap& map, std::uint32_t base_offset,
                  std::string* text = nullptr) {
  CapturedLog log;
  std::ostringstream out;
  write_binary_header(map, out, base_offset);
  if (text != nullptr) *text = log.text();
  return out.str();
}

TEST(BinaryHeader, Log) {
  const auto map = small_image(kKelp30);
  map->modules.resize(1);
  map->modules[0]->hash.fill(0xA5);
  std::string text;
  write(*map, 0x8000, &text);
  std::string row = "        ";
  for (int i = 0; i < 16; ++i) row += "a5 ";
  using namespace std::string_literals;
  EXPECT_EQ(
      "  TovaFwBinaryHeader\n"
      "    header_id           $TM1\n"
      "    name                TOVAFW\0\0\n"
      "    fw_img_flags        10\n"
      "    major_ver           1\n"
      "    minor_ver           2\n"
      "    hotfix_ver          3\n"
      "    build_ver           4\n"
      "    hw_buf_ba           b0000000\n"
      "    hw_buf_len          2000 (bytes)\n"
      "    load_offset         1000\n"
      "    preload_page_count  8\n"
      "    num_mods      1\n"
      "Module Entries\n"
      "  $TME BASEMODU uuid 01234567-89ab-cdef-0123-456789abcdef type 14b31 "
      "aff_mask 3 ep a0001004 cfg_off 2 cfg_cnt 1 inst_max_cnt 2 domain_ll 1 "
      "domain_dp 0 domain_rtos 1 core_type a5 inst_stack_size 1\n"
      "    seg    0   flags   1f   vma a0001000   file_off     8000   len "
      "       1\n"
      "    seg    f\n"
      "    seg    2   flags    2   vma a0004000   file_off        0   len "
      "       2\n"
      "      hash\n"s +
          row + "\n" + row + "\n        \n" +
          "  ModuleConfig par_0 1 par_1 2 par_2 3 par_3 4 is_bytes 5 cps 6 "
          "ibs 7 obs 8 mod_flags 9 cpc 10 obls 11\n"
          "Warning: Cannot match symbol << beta to segment, skipping\n"
          "Warning: Cannot match symbol << gamma to segment, skipping\n"
          "Exported 4 symbols\n",
      text);
}

TEST(BinaryHeader, LongNameIsDropped) {
  const auto map = small_image(kKelp18);
  map->binary_name = "EIGHT__8";
  EXPECT_EQ("EIGHT__8", write(*map, 4096).substr(8, 8));
  map->binary_name = "NINE____9";
  EXPECT_EQ(std::string(8, '\0'), write(*map, 4096).substr(8, 8));
}

TEST(BinaryHeader, Bit31OfTheFlagsWarns) {
  const auto map = small_image(kKelp18);
  map->fw_img_flags = 0x80000000;
  std::string text;
  write(*map, 4096, &text);
  EXPECT_TRUE(text.starts_with(
      "Warning: =TP= FLAG TURNED ON FOR PP BUILDS !!!\n  TovaFwBinaryHeader"));
}

TEST(BinaryHeader, Failures) {
  struct Case {
    std::string message;
    std::size_t written;
    void (*change)(FwOutMap&);
  };
  const std::string size = "preload size not aligned to page size";
  const std::string base = "Non-aligned base address of section";
  const std::string address = "Non-aligned address of section";
  const Case cases[] = {
      {"preload page count cannot be computed - no modules", 0,
       [](FwOutMap& map) { map.modules.clear(); }},
      {size, 0, [](FwOutMap& map) { map.image_end = 1; }},
      // The sum with 4096 is 0 in 64 bits.
      {size, 0, [](FwOutMap& map) { map.image_end = ~std::uint64_t{4095}; }},
      {base, 52 + 116,
       [](FwOutMap& map) {
         map.modules[1]->groups[0]->sections[0]->header->vma += 1;
       }},
      {address, 52 + 116,
       [](FwOutMap& map) { map.modules[1]->groups[1]->file_offset = 0x10; }},
      {"no exception", 52 + 3 * 116 + 44 + 4 + 3 * 12 + 4 + 18,
       [](FwOutMap& map) { map.modules[0]->groups[1]->file_offset = 0x10; }},
  };
  for (const Case& expected : cases) {
    const auto map = small_image(kKelp18);
    expected.change(*map);
    CapturedLog log;
    std::ostringstream out;
    EXPECT_EQ(expected.message,
              message_of([&] { write_binary_header(*map, out, 4096); }));
    EXPECT_EQ(expected.written, out.str().size());
  }
}

// Only in 1.5 does a module move the base of the offsets behind it: by its load
// pages, or by the whole binary if its type is 0.
TEST(BinaryHeader, FileBaseMovesInKelp15) {
  const auto addon_offset = [](std::uint32_t generation, int type) {
    const auto map = small_image(generation);
    map->image_end = 0x7000;
    map->modules[0]->type = type;
    return write(*map, 0x1000).substr(kAddonFileOff, 4);
  };
  EXPECT_EQ(bytes_of("00200000"), addon_offset(kKelp15, 3));
  EXPECT_EQ(bytes_of("00800000"), addon_offset(kKelp15, 0));
  EXPECT_EQ(bytes_of("00100000"), addon_offset(kKelp18, 0));
}

// A segment at the top of the address space ends at 0 and so holds nothing; the
// later of two groups of one type takes the slot.
TEST(BinaryHeader, SymbolsNearTheTopOfTheAddressSpace) {
  const auto map = small_image(kKelp18);
  map->modules.resize(1);
  auto& groups = map->modules[0]->groups;
  groups[1]->type = 0;
  groups[1]->flags = 0x00020002;
  auto& vma = groups[1]->sections[0]->header->vma;
  map->exported_symbols = {{true, 'T', 0xFFFFE123, "top"}};
  vma = 0xFFFFE000;
  EXPECT_TRUE(write(*map, 4096).ends_with(bytes_of("01000000 00000000")));
  vma = 0xFFFFD000;
  EXPECT_TRUE(
      write(*map, 4096)
          .ends_with(bytes_of(
              "01000000 01 00 0000 14000000 23e1ffff 04000000 746f7000")));
}

}  // namespace
}  // namespace tova_fw_builder
