#include "definitions/uuid/uuid.h"

#include <gtest/gtest.h>

#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

constexpr char kLower[] = "01234567-89ab-cdef-0123-456789abcdef";
constexpr char kUpper[] = "01234567-89AB-CDEF-0123-456789ABCDEF";
constexpr std::array<std::uint8_t, 16> kBytes = {
    0x67, 0x45, 0x23, 0x01, 0xAB, 0x89, 0xEF, 0xCD,
    0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF};

TEST(Uuid, ThreeNumbersAreLittleEndianTheRestIsNot) {
  // Text ahead is kept; only the letters of the classic locale are raised.
  for (const std::string head : {"", "F", "{", "X\xe4", "01234567-"}) {
    for (const std::string text : {kLower, kUpper}) {
      EXPECT_EQ(kBytes, parse_uuid(head + text).bytes());
      EXPECT_EQ(head + kUpper, parse_uuid(head + text).text());
    }
  }
  const Uuid from_bytes(parse_uuid(kUpper).bytes());
  EXPECT_EQ(kBytes, from_bytes.bytes());
  EXPECT_EQ(kLower, from_bytes.text());
}

TEST(Uuid, OtherFormsAreRefused) {
  const std::string good = kLower;
  for (const std::string& text :
       {std::string(), good + "}", good + " ", good.substr(1),
        good.substr(0, 35) + "g", good.substr(0, 8) + good.substr(9) + "0",
        std::string(36, '-')}) {
    EXPECT_EQ("Wrong UUID format", message_of([&] { parse_uuid(text); }));
  }
}

TEST(Uuid, NodesCompareAsTwoLittleEndianNumbers) {
  const auto node = [](const std::string& digits) {
    return parse_uuid("00000000-0000-0000-0000-" + digits).node();
  };
  EXPECT_EQ(0x04030201u, node("010203040506").first);
  EXPECT_EQ(0x0605u, node("010203040506").second);
  EXPECT_LT(node("020000000000"), node("000000010000"));
  EXPECT_LT(node("000000800000"), node("000000810000"));
  EXPECT_LT(node("000000000200"), node("000000000001"));
  EXPECT_EQ(node("ffffffffffff"), node("FFFFFFFFFFFF"));
}

}  // namespace
}  // namespace tova_fw_builder
