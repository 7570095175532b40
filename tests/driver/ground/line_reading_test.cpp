// The hand-written line and field readers beside the streams whose rules they
// keep, on random text.
#include <gtest/gtest.h>

#include <random>
#include <sstream>

#include "driver/ground/line_fields.h"
#include "driver/ground/line_reader.h"

namespace tova_fw_builder {
namespace {

template <typename Pieces>
std::string random_text(std::mt19937& random, const Pieces& pieces) {
  std::string text;
  for (auto count = random() % 8; count > 0; --count) {
    text += pieces[random() % std::size(pieces)];
  }
  return text;
}

TEST(LineFields, AgreeWithStreamExtraction) {
#ifdef _LIBCPP_VERSION
  GTEST_SKIP() << "this library takes nothing of hexadecimal like F0X1";
#endif
  static const char* const kPieces[] = {
      "0",          "0x",        "0X",   "x",          "-",
      "+",          "1",         "9",    "ab",         "F",
      "ffffffff",   "100000000", " ",    "\t",         "\v\f\r",
      "4294967295", "g",         "T",    ".",          ",",
      "00",         "\n",        "\x80", "4294967296", "18446744073709551616"};
  std::mt19937 random(1);
  for (int round = 0; round < 40000; ++round) {
    const std::string text = random_text(random, kPieces);
    std::istringstream stream(text);
    LineFields fields(text);
    for (int field = 0; field < 4; ++field) {
      std::uint32_t number = 0;
      char character = 0;
      std::string word;
      const auto kind = random() % 5;
      if (kind == 0) {
        stream >> character;
        EXPECT_EQ(character, fields.character()) << text;
      } else if (kind == 1) {
        stream >> word;
        EXPECT_EQ(word, fields.word()) << text;
      } else if (kind == 4) {
        std::uint64_t wide = 0;
        stream >> std::hex >> wide;
        EXPECT_EQ(wide, fields.wide_number(16)) << text;
      } else {
        stream >> (kind == 2 ? std::dec : std::hex) >> number;
        EXPECT_EQ(number, fields.number(kind == 2 ? 10 : 16)) << text;
      }
      ASSERT_EQ(stream.fail(), fields.failed()) << text;
      if (kind != 0 && !stream.fail()) {
        ASSERT_EQ(stream.eof(), fields.at_end()) << text;
      }
    }
  }
}

TEST(LineReader, AgreeWithTheBufferOfTheStreams) {
  const std::string kPieces[] = {"\n",
                                 "abc",
                                 "\r\n",
                                 std::string(1, '\0'),
                                 std::string(1023, 'x'),
                                 std::string(1022, 'y') + "\n",
                                 std::string(511, 'z') + "\n"};
  std::mt19937 random(2);
  for (int round = 0; round < 400; ++round) {
    std::string text;
    if (round % 4 == 0) {  // across several of the reader's pieces
      while (text.size() < 150000) {
        text += std::string(random() % 1000, 'a') + "\n";
      }
    }
    text += random_text(random, kPieces);
    std::istringstream stream(text), fast(text);
    LineReader lines(fast);
    char expected[1024];
    std::string_view line;
    while (stream.good()) {
      expected[0] = '\0';
      stream.getline(expected, sizeof(expected));
      ASSERT_TRUE(lines.next(line));
      ASSERT_EQ(expected, line);
    }
    ASSERT_FALSE(lines.next(line));
  }
}

// The feed of a longest line stands behind the reader's piece of 65536 bytes.
TEST(LineReader, LongestLineAtTheEndOfAPiece) {
  std::string text;
  for (int i = 0; i < 63; ++i) text += std::string(1023, 'a') + "\n";
  text += "\n" + std::string(1023, 'x') + "\nlast";
  std::istringstream in(text);
  LineReader lines(in);
  std::string_view line;
  int count = 0;
  while (lines.next(line)) ++count;
  EXPECT_EQ(66, count);
  EXPECT_EQ("last", line);
}

}  // namespace
}  // namespace tova_fw_builder
