#include "companion/ground/byte_text.h"

#include <gtest/gtest.h>

namespace tova_fw_builder {
namespace {

using Bytes = std::vector<std::uint8_t>;

// The vectors of RFC 4648, 10, and bytes with the top bit set.
TEST(ByteText, FormsOfTheRfc) {
  const struct {
    Bytes bytes;
    const char* hexadecimal;
    const char* base64;
  } cases[] = {
      {{}, "", ""},
      {{'f'}, "66", "Zg=="},
      {{'f', 'o'}, "666f", "Zm8="},
      {{'f', 'o', 'o'}, "666f6f", "Zm9v"},
      {{'f', 'o', 'o', 'b'}, "666f6f62", "Zm9vYg=="},
      {{'f', 'o', 'o', 'b', 'a'}, "666f6f6261", "Zm9vYmE="},
      {{'f', 'o', 'o', 'b', 'a', 'r'}, "666f6f626172", "Zm9vYmFy"},
      {{0xFB, 0xEF, 0xFF, 0x00}, "fbefff00", "++//AA=="},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.hexadecimal, hexadecimal(c.bytes));
    EXPECT_EQ(c.base64, base64(c.bytes));
    EXPECT_EQ(c.bytes, from_hexadecimal(c.hexadecimal));
    EXPECT_EQ(c.bytes, from_base64(c.base64));
  }
}

TEST(ByteText, OnlyWholeBytesAreTaken) {
  EXPECT_EQ((Bytes{0xAB, 0xCD}), from_hexadecimal(" A\tb\nC\r\nd\n"));
  EXPECT_EQ((Bytes{0xAB, 0xCD, 0xEF}), from_hexadecimal("ab:\n  CD:ef"));
  EXPECT_EQ((Bytes{'f', 'o'}), from_base64("Z m\n8\n=\n"));
  // RFC 4648, 5 and 3.2: the other alphabet, and without padding.
  EXPECT_EQ((Bytes{0xFB, 0xEF, 0xFF, 0x00}), from_base64("--__AA"));
  EXPECT_EQ((Bytes{'f'}), from_base64("Zg"));
  for (const char* text : {"a", "abc", "0x12", "ag", "a-"}) {
    EXPECT_EQ(std::nullopt, from_hexadecimal(text)) << text;
  }
  for (const char* text : {"Z", "Zm9vY", "Zg=", "Z===", "====", "Zg==Zg==",
                           "Zm9:", "=Zm9", "Zm=8"}) {
    EXPECT_EQ(std::nullopt, from_base64(text)) << text;
  }
}

}  // namespace
}  // namespace tova_fw_builder
