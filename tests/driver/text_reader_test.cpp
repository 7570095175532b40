#include "driver/text_reader.h"

#include <gtest/gtest.h>

#include <sstream>

namespace tova_fw_builder {
namespace {

TEST(TextReader, WordStaysWhenNoneIsLeft) {
  std::istringstream line("\t key  ");
  std::string word = "old";
  EXPECT_TRUE(next_word_or_keep(line, word));
  EXPECT_EQ("key", word);
  EXPECT_FALSE(line.eof());  // white space is left
  EXPECT_FALSE(next_word_or_keep(line, word));
  EXPECT_EQ("key", word);
  EXPECT_EQ("", next_word(line));
}

TEST(TextReader, BufferedLineStopsAt1023Characters) {
  const std::string full(1023, 'x');
  std::istringstream in(full + "\n" + full + "y\nnever\n");
  std::string line;
  read_buffered_line(in, line);
  EXPECT_EQ(full, line);
  EXPECT_TRUE(in.good());
  read_buffered_line(in, line);
  EXPECT_EQ(full, line);
  EXPECT_TRUE(in.fail());
  read_buffered_line(in, line);
  EXPECT_EQ("", line);
}

TEST(TextReader, BufferedLineEndings) {
  std::istringstream in(std::string("a\0b\r\n\nlast", 10));
  std::string line;
  read_buffered_line(in, line);
  EXPECT_EQ("a", line);  // a NUL ends the text
  read_buffered_line(in, line);
  EXPECT_EQ("", line);
  EXPECT_TRUE(in.good());
  read_buffered_line(in, line);
  EXPECT_EQ("last", line);
  EXPECT_TRUE(in.eof());
  EXPECT_FALSE(in.fail());
}

TEST(TextReader, BlankMeansWhiteSpaceAlone) {
  EXPECT_TRUE(is_blank(""));
  EXPECT_TRUE(is_blank(" \t\v\f\r"));
  EXPECT_FALSE(is_blank(" #"));
  EXPECT_FALSE(is_blank(std::string(1, '\0')));
}

}  // namespace
}  // namespace tova_fw_builder
