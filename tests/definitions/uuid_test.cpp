#include "definitions/uuid.h"

#include <gtest/gtest.h>

#include "driver/byte_dump.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

std::string hex(const Uuid& uuid) {
  std::ostringstream out;
  out << ByteDump{uuid.bytes().data(), uuid.bytes().size(), ""};
  return out.str().substr(1, 47);
}

constexpr char kLower[] = "01234567-89ab-cdef-0123-456789abcdef";
constexpr char kUpper[] = "01234567-89AB-CDEF-0123-456789ABCDEF";
constexpr char kBytes[] = "67 45 23 01 ab 89 ef cd 01 23 45 67 89 ab cd ef";

TEST(Uuid, ThreeNumbersAreLittleEndianTheRestIsNot) {
  for (const std::string text : {kLower, kUpper}) {
    EXPECT_EQ(kBytes, hex(parse_uuid(text)));
    EXPECT_EQ(kUpper, parse_uuid(text).text());
  }
}

TEST(Uuid, TextFromBytesIsInLowerCase) {
  const Uuid uuid(parse_uuid(kUpper).bytes());
  EXPECT_EQ(kBytes, hex(uuid));
  EXPECT_EQ(kLower, uuid.text());
}

TEST(Uuid, TextAheadIsAcceptedAndKept) {
  for (const std::string head : {"f", "{", "x\xe4", "01234567-"}) {
    const Uuid uuid = parse_uuid(head + kLower);
    EXPECT_EQ(kBytes, hex(uuid)) << head;
    EXPECT_EQ(kUpper, uuid.text().substr(head.size())) << head;
  }
  // Only the letters of the classic locale have an upper case.
  EXPECT_EQ(std::string("X\xe4") + kUpper,
            parse_uuid(std::string("x\xe4") + kLower).text());
}

TEST(Uuid, OtherFormsAreRefused) {
  for (const std::string& text :
       {std::string(), std::string(kLower) + "}", std::string(kLower) + " ",
        std::string(kLower).substr(1), std::string(36, '-'),
        std::string("01234567-89ab-cdef-0123-456789abcdeg"),
        std::string("0123456789ab-cdef-0123-456789abcdef0"),
        std::string("01234567-89ab-cdef-01234-56789abcdef")}) {
    EXPECT_EQ("Wrong UUID format", message_of([&] { parse_uuid(text); }))
        << text;
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
