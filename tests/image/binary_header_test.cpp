#include "image/binary_header.h"

#include <gtest/gtest.h>

#include <sstream>

#include "image/small_image.h"
#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

constexpr std::size_t kAddonFileOff = 52 + 116 + 80 + 8;

struct Written {
  std::string bytes, log;
};

Written write(const FwOutMap& map, std::uint32_t base_offset) {
  CapturedLog log;
  std::ostringstream out;
  write_binary_header(map, out, base_offset);
  return {out.str(), log.text()};
}

TEST(BinaryHeader, LongNameIsDroppedAndBit31Warns) {
  const auto map = small_image(kKelp18);
  map->binary_name = "EIGHT__8";
  EXPECT_EQ("EIGHT__8", write(*map, 4096).bytes.substr(8, 8));
  map->binary_name = "NINE____9";
  map->fw_img_flags = 0x80000000;
  const Written written = write(*map, 4096);
  EXPECT_EQ(std::string(8, '\0'), written.bytes.substr(8, 8));
  EXPECT_TRUE(written.log.starts_with(
      "Warning: =TP= FLAG TURNED ON FOR PP BUILDS !!!\n  TovaFwBinaryHeader"));
}

TEST(BinaryHeader, Failures) {
  using Map = FwOutMap;
  const struct {
    std::string message;
    std::size_t written;
    void (*change)(Map&);
  } cases[] = {
      {"preload page count cannot be computed - no modules", 0,
       [](Map& map) { map.modules.clear(); }},
      {"preload size not aligned to page size", 0,
       [](Map& map) { map.image_end = 1; }},
      {"preload size not aligned to page size", 0,  // a sum of 0 in 64 bits
       [](Map& map) { map.image_end = ~std::uint64_t{4095}; }},
      {"Non-aligned base address of section", 52 + 116,
       [](Map& map) { map.modules[1]->groups[0]->sections[0]->header->vma++; }},
      {"Non-aligned address of section", 52 + 116,
       [](Map& map) { map.modules[1]->groups[1]->file_offset = 0x10; }},
      // .bss isn't stored: its offset doesn't matter.
      {"no exception", 52 + 3 * 116 + 44 + 4 + 3 * 12 + 4 + 18,
       [](Map& map) { map.modules[0]->groups[1]->file_offset = 0x10; }},
  };
  for (const auto& c : cases) {
    const auto map = small_image(kKelp18);
    c.change(*map);
    CapturedLog log;
    std::ostringstream out;
    EXPECT_EQ(c.message,
              message_of([&] { write_binary_header(*map, out, 4096); }));
    EXPECT_EQ(c.written, out.str().size());
  }
}

// Only in 1.5 does a module move the base of the offsets behind it: by its load
// pages, or by the whole binary if its type is 0.
TEST(BinaryHeader, FileBaseMovesInKelp15) {
  const auto addon_offset = [](std::uint32_t generation, int type) {
    const auto map = small_image(generation);
    map->image_end = 0x7000;
    map->modules[0]->type = type;
    return write(*map, 0x1000).bytes.substr(kAddonFileOff, 4);
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
  const auto table = [&map] { return write(*map, 4096).bytes.substr(212); };
  vma = 0xFFFFE000;
  EXPECT_EQ(bytes_of("01000000 00000000"), table());
  vma = 0xFFFFD000;
  EXPECT_EQ(bytes_of("01000000 01000000 14000000 23e1ffff 04000000 746f7000"),
            table());
}

}  // namespace
}  // namespace tova_fw_builder
