// The line and word rules that the text formats share.
#include "driver/text_reader.h"

#include <algorithm>
#include <array>

namespace tova_fw_builder {

void read_buffered_line(std::istream& in, std::string& line) {
  std::array<char, 1024> buffer;
  buffer[0] = '\0';
  in.getline(buffer.data(), buffer.size());
  line.assign(buffer.data());
}

bool next_word_or_keep(std::istream& line, std::string& word) {
  line >> word;
  return !line.fail();
}

std::string next_word(std::istream& line) {
  std::string word;
  line >> word;
  return word;
}

bool is_blank(const std::string& text) {
  return std::all_of(text.begin(), text.end(), is_white_space);
}

}  // namespace tova_fw_builder
