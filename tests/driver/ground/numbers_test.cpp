#include "driver/ground/numbers.h"

#include <gtest/gtest.h>

#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

struct Case {
  const char* text;
  int base;
  const char* signed_result;
  const char* unsigned_result;
};

constexpr char kNoInt[] = "invalid stoi argument";
constexpr char kBigInt[] = "stoi argument out of range";
constexpr char kNoUnsigned[] = "invalid stoul argument";
constexpr char kBigUnsigned[] = "stoul argument out of range";

// Ranges, prefixes and what follows a number, worked out from the rules of
// strtol with 32-bit limits.
TEST(Numbers, StrictConversions) {
  const Case cases[] = {
      {"", 10, kNoInt, kNoUnsigned},
      {"x7", 10, kNoInt, kNoUnsigned},
      {"-", 16, kNoInt, kNoUnsigned},
      {" \t+12z", 10, "12", "12"},
      {"-1", 10, "-1", "4294967295"},
      {"0x1F", 16, "31", "31"},
      {"0X1f", 16, "31", "31"},
      {"0x", 16, "0", "0"},
      {"0xg", 16, "0", "0"},
      {"0x10", 10, "0", "0"},
      {"010", 10, "10", "10"},
      {"ffz", 16, "255", "255"},
      {"7FFFFFFF", 16, "2147483647", "2147483647"},
      {"80000000", 16, kBigInt, "2147483648"},
      {"-80000000", 16, "-2147483648", "2147483648"},
      {"-80000001", 16, kBigInt, "2147483647"},
      {"FFFFFFFF", 16, kBigInt, "4294967295"},
      {"-FFFFFFFF", 16, kBigInt, "1"},
      {"100000000", 16, kBigInt, kBigUnsigned},
      {"18446744073709551617", 10, kBigInt, kBigUnsigned},
      {"99999999999999999999999999", 10, kBigInt, kBigUnsigned},
  };
  for (const Case& c : cases) {
    std::string result;
    std::string error = message_of(
        [&] { result = std::to_string(parse_signed(c.text, c.base)); });
    EXPECT_EQ(c.signed_result, result.empty() ? error : result) << c.text;
    result.clear();
    error = message_of(
        [&] { result = std::to_string(parse_unsigned(c.text, c.base)); });
    EXPECT_EQ(c.unsigned_result, result.empty() ? error : result) << c.text;
  }
}

TEST(Numbers, ForgivingHex) {
  EXPECT_EQ(0x80000000u, hex_or_zero("80000000"));
  EXPECT_EQ(0x80000000u, hex_or_zero("0x80000000"));
  EXPECT_EQ(0u, hex_or_zero("zz"));
  EXPECT_EQ(0u, hex_or_zero("0x"));
  EXPECT_EQ(0x12u, hex_or_zero("12zz"));
  EXPECT_EQ(0xFFFFFFFFu, hex_or_zero("100000000"));
  EXPECT_EQ(0xFFFFFFFFu, hex_or_zero("-1"));
}

TEST(Numbers, ForgivingDecimalIsCutFrom64Bits) {
  EXPECT_EQ(12u, decimal_or_zero(" +12x"));
  EXPECT_EQ(0u, decimal_or_zero("x"));
  EXPECT_EQ(0xFFFFFFFFu, decimal_or_zero("-1"));
  EXPECT_EQ(1u, decimal_or_zero("4294967297"));
  EXPECT_EQ(0xFFFFFFFFu, decimal_or_zero("9223372036854775808"));
  EXPECT_EQ(0u, decimal_or_zero("-9223372036854775809"));
}

TEST(Numbers, ForgivingWithBaseByPrefix) {
  EXPECT_EQ(16u, any_base_or_zero("0x10U"));
  EXPECT_EQ(8u, any_base_or_zero("010"));
  EXPECT_EQ(0u, any_base_or_zero("09"));
  EXPECT_EQ(10u, any_base_or_zero("10"));
  EXPECT_EQ(0u, any_base_or_zero("(16)"));
  EXPECT_EQ(0u, any_base_or_zero(""));
  EXPECT_EQ(0xFFFFFFFFu, any_base_or_zero("-1"));
  EXPECT_EQ(0xFFFFFFFFu, any_base_or_zero("4294967296"));
}

}  // namespace
}  // namespace tova_fw_builder
