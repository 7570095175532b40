#include "companion/ground/message_text.h"

#include <gtest/gtest.h>

namespace tova_fw_builder {
namespace {

TEST(MessageText, Numbers) {
  EXPECT_EQ("0 bytes", counted(0, "byte"));
  EXPECT_EQ("1 byte", counted(1, "byte"));
  EXPECT_EQ("18446744073709551615 bytes", counted(~0ull, "byte"));
  EXPECT_EQ("0x0", hex_number(0));
  EXPECT_EQ("0xffffffffffffffff", hex_number(~0ull));
  EXPECT_EQ("00000000", eight_digits(0));
  EXPECT_EQ("0123abcd", eight_digits(0x123abcd));
  EXPECT_EQ("90123abcd", eight_digits(0x90123abcd));
}

}  // namespace
}  // namespace tova_fw_builder
