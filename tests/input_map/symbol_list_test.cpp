#include <gtest/gtest.h>

#include <map>
#include <random>
#include <sstream>

#include "input_map/fw_image_map.h"
#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

TEST(SymbolList, TakesWhatHasAddressTypeAndName) {
  const TempDir dir;
  const std::string path =
      dir.write("nm",
                "10000000 T _start more\n"
                "         U memcpy\n"  // undefined: 'U' is no digit
                "10000000 T\n"
                "abcdef0123 T too_wide\n"
                "0x T no_digit\n"
                "0010T glued\r\n"
                "\n"
                "b a b\n"
                "20000000 t _start\n"
                "-1 d last " +
                    std::string(1100, ' ') + "\n3 T behind_the_cut\n");
  const CapturedLog log;
  FwImageMap map;
  map.merge_symbols(read_symbols(path));
  EXPECT_EQ("Loaded 4 symbols from file: " + path + "\n", log.text());
  const auto start = map.find_symbol("_start");
  EXPECT_TRUE(start.valid);
  EXPECT_EQ(0x20000000u, start.address);  // the last line wins
  EXPECT_EQ('t', start.type);
  EXPECT_EQ("_start", start.name);
  EXPECT_EQ(0x10u, map.find_symbol("glued").address);
  EXPECT_EQ('T', map.find_symbol("glued").type);
  EXPECT_EQ(0xBu, map.find_symbol("b").address);
  EXPECT_EQ(0xFFFFFFFFu, map.find_symbol("last").address);
}

// Names that part in any chunk of the sort, at its edges, or not at all.
TEST(SymbolList, OrderAndDoublesAreThoseOfAMap) {
  std::mt19937 random(3);
  std::map<std::string, std::uint32_t> expected;
  std::ostringstream text;
  for (std::uint32_t i = 0; i < 5000; ++i) {
    std::string name(1 + random() % 25, 'a');
    name[random() % name.size()] = "b\xFF\x01"[random() % 3];
    text << std::hex << i << " T " << name << '\n';
    expected[name] = i;
  }
  std::istringstream in(text.str());
  const auto symbols = read_symbols(in);
  ASSERT_EQ(expected.size(), symbols.entries.size());
  auto place = symbols.entries.begin();
  for (const auto& [name, address] : expected) {
    EXPECT_EQ(name, place->name);
    EXPECT_EQ(address, (place++)->address);
  }
}

}  // namespace
}  // namespace tova_fw_builder
