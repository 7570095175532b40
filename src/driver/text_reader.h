// driver/text_reader.h
// The line and word rules that the text formats share. They follow the
// standard streams to the letter, their end-of-file and failed states
// included, since readers loop on those states.
#pragma once

#include <istream>
#include <string>

namespace tova_fw_builder {

// The classic locale's white space: blank, \t, \n, \v, \f, \r.
constexpr bool is_white_space(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

// Value of a hexadecimal digit, -1 for any other character.
constexpr int hex_digit_value(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// Reads one line through a buffer of 1024 characters, as the small text
// formats do: at most 1023 characters, the line feed taken and dropped. A
// longer line yields its first 1023 characters and leaves `in` failed, so that
// a loop on good() or on the state handles that part and then ends. A NUL ends
// the line's text. A stream that isn't good yields an empty line and fails.
void read_buffered_line(std::istream& in, std::string& line);

// Takes the next white-space-delimited word from `line`. When no word is left,
// `word` KEEPS the value that it had and `line` is failed: a statement whose
// operand is missing sees the word before it once more, and definition files
// in the field rely on it. Yields whether a word was taken.
bool next_word_or_keep(std::istream& line, std::string& word);

// Takes the next word; empty when none is left.
std::string next_word(std::istream& line);

// True for an empty text and for one of white space alone.
bool is_blank(const std::string& text);

}  // namespace tova_fw_builder
