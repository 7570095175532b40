#include "driver/ground/byte_dump.h"

#include <gtest/gtest.h>

#include <sstream>

#include "driver/ground/c_array.h"
#include "driver/ground/log.h"
#include "support/bytes.h"
#include "support/captured_log.h"

namespace tova_fw_builder {
namespace {

std::string dump(std::size_t length, const char* indent = "") {
  const std::string text = counting(length, 9);
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  std::ostringstream out;
  out << ByteDump{bytes, length, "L", indent} << '|' << 16;
  return out.str();
}

std::string c_array(std::size_t length) {
  const std::string text = counting(length, 9);
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  std::ostringstream out;
  out << std::hex << CArray{"L", {bytes, length}} << '|' << 16;
  return out.str();
}

TEST(ByteDump, PlainFormClosesFullRowsAndLeavesDecimal) {
  EXPECT_EQ("L\n--|16", dump(0, "--"));
  EXPECT_EQ("L\n--09 0a 0b |16", dump(3, "--"));
  EXPECT_EQ("L\n09 0a 0b 0c 0d 0e 0f 10 11 12 13 14 15 16 17 |16", dump(15));
  EXPECT_EQ("L\n--09 0a 0b 0c 0d 0e 0f 10 11 12 13 14 15 16 17 18 \n--|16",
            dump(16, "--"));
}

TEST(CArray, RowsAndTheirCommas) {
  EXPECT_EQ("unsigned char L[0] = { \n};|16", c_array(0));
  EXPECT_EQ(
      "unsigned char L[8] = { \n"
      "0x09, 0x0a, 0x0b, 0x0c, 0x0d, 0x0e, 0x0f, 0x10\n};|16",
      c_array(8));
  EXPECT_EQ(
      "unsigned char L[9] = { \n"
      "0x09, 0x0a, 0x0b, 0x0c, 0x0d, 0x0e, 0x0f, 0x10,\n0x11, };|16",
      c_array(9));
}

TEST(ByteDump, NullDataPrintsNoBytes) {
  std::ostringstream out;
  out << ByteDump{nullptr, 256, "key"};
  EXPECT_EQ("key\n", out.str());
}

TEST(LogLine, PrefixesByLevelAndOneNewline) {
  CapturedLog log;
  LogLine(kLogError).stream() << "a" << std::hex << 16;
  LogLine(kLogWarning).stream() << 16;
  LogLine(kLogInfo).stream() << "\nb";
  LogLine(kLogDetail).stream();
  EXPECT_EQ("Error: a10\nWarning: 16\n\nb\n\n", log.text());
}

}  // namespace
}  // namespace tova_fw_builder
