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

// Decimal numbers are cut from 64 bits, others stop at 32.
TEST(Numbers, Forgiving) {
  const struct {
    const char* text;
    std::uint32_t hex, decimal, any_base;
  } cases[] = {
      {" +12x", 0x12, 12, 12},
      {"zz", 0, 0, 0},
      {"0x", 0, 0, 0},
      {"0x10U", 0x10, 0, 16},
      {"010", 0x10, 10, 8},
      {"09", 9, 9, 0},
      {"(16)", 0, 0, 0},
      {"", 0, 0, 0},
      {"-1", 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF},
      {"80000000", 0x80000000, 80000000, 80000000},
      {"4294967297", 0xFFFFFFFF, 1, 0xFFFFFFFF},
      {"9223372036854775808", 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF},
      {"-9223372036854775809", 0xFFFFFFFF, 0, 0xFFFFFFFF},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.hex, hex_or_zero(c.text)) << c.text;
    EXPECT_EQ(c.decimal, decimal_or_zero(c.text)) << c.text;
    EXPECT_EQ(c.any_base, any_base_or_zero(c.text)) << c.text;
  }
}

}  // namespace
}  // namespace tova_fw_builder
