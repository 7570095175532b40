#include "input_map/symbol_list.h"

#include <gtest/gtest.h>

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
  const auto symbols = read_symbols(path);
  EXPECT_EQ("Loaded 4 symbols from file: " + path + "\n", log.text());
  EXPECT_EQ(0x20000000u, symbols.at("_start").address);  // the last line wins
  EXPECT_EQ('t', symbols.at("_start").type);
  EXPECT_TRUE(symbols.at("_start").valid);
  EXPECT_EQ(0x10u, symbols.at("glued").address);
  EXPECT_EQ('T', symbols.at("glued").type);
  EXPECT_EQ(0xBu, symbols.at("b").address);
  EXPECT_EQ(0xFFFFFFFFu, symbols.at("last").address);
  EXPECT_EQ("last", symbols.at("last").name);
}

}  // namespace
}  // namespace tova_fw_builder
