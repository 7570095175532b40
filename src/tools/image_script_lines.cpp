// The keywords are tested one after the other, each once, on a current word
// that `bin`, `size` and `sha` overwrite with their operands. So a `bin` line
// may go on with another statement ("bin a.bin offset 1000"), and a file named
// like a later keyword acts as that keyword.
#include "driver/ground/line_fields.h"
#include "tools/image_script.h"

namespace tova_fw_builder {

namespace {

// What is read of one line.
struct Line {
  LineFields fields;
  std::string word;  // the current one
};

// Makes the next word of the line the current one; it stays if none is left, so
// `bin` alone asks for a file called bin.
const std::string& take_word(Line& line) {
  const std::string_view word = line.fields.word();
  if (!word.empty()) line.word = word;
  return line.word;
}

void read_file(Line& line, ImageStatement& statement) {
  statement.name = take_word(line);
  statement.is_marked = take_word(line) == "m";
}

void read_name(Line& line, ImageStatement& statement) {
  statement.name = take_word(line);
}

void read_offset(Line& line, ImageStatement& statement) {
  statement.offset = line.fields.wide_number(16);
}

// Words that can't be read as numbers are passed over. What the failed read
// has consumed stays consumed, so behind "0x" or a number that is too large it
// is the next word that goes.
void read_numbers(Line& line, ImageStatement& statement) {
  statement.width = line.word == "dd" ? 4 : line.word == "dw" ? 2 : 1;
  while (!line.fields.failed() && !line.fields.at_end()) {
    const std::uint32_t number = line.fields.number(16);
    if (!line.fields.failed()) {
      statement.numbers.push_back(number);
    } else {
      line.fields.clear();
      line.fields.word();
    }
  }
}

struct Keyword {
  std::string_view word;
  ImageStatement::Kind kind;
  void (*read)(Line&, ImageStatement&);
};

// The order is that of the tests; users rely on it.
constexpr Keyword kKeywords[] = {
    {"bin", ImageStatement::kBin, read_file},
    {"pt", ImageStatement::kPt, [](Line&, ImageStatement&) {}},
    {"offset", ImageStatement::kOffset, read_offset},
    {"dd", ImageStatement::kNumbers, read_numbers},
    {"dw", ImageStatement::kNumbers, read_numbers},
    {"db", ImageStatement::kNumbers, read_numbers},
    {"size", ImageStatement::kSize, read_name},
    {"sha", ImageStatement::kSha, read_name},
};

}  // namespace

std::vector<std::string_view> image_keywords() {
  std::vector<std::string_view> words;
  for (const Keyword& keyword : kKeywords) words.push_back(keyword.word);
  return words;
}

std::vector<ImageStatement> image_statements(std::string_view text) {
  std::vector<ImageStatement> statements;
  Line line{LineFields(text), {}};
  take_word(line);
  for (const Keyword& keyword : kKeywords) {
    if (line.word != keyword.word) continue;
    statements.push_back(
        {.kind = keyword.kind, .word = std::string(keyword.word)});
    keyword.read(line, statements.back());
  }
  return statements;
}

}  // namespace tova_fw_builder
