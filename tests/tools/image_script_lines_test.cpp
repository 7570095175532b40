// Lines of image scripts. What a line without enough words, or with too many,
// means was worked out by hand from docs/file-formats.md.
#include <gtest/gtest.h>

#include <sstream>

#include "tools/image_script.h"

namespace tova_fw_builder {
namespace {

// "bin NAME m", "pt", "offset N", "dd/WIDTH N N", "size NAME" or "sha NAME", a
// ';' between two.
std::string statements_of(std::string_view line) {
  std::ostringstream text;
  for (const ImageStatement& statement : image_statements(line)) {
    if (text.tellp() > 0) text << "; ";
    text << statement.word;
    if (!statement.name.empty()) text << ' ' << statement.name;
    if (statement.is_marked) text << " m";
    text << std::hex;
    if (statement.kind == ImageStatement::kOffset) {
      text << ' ' << statement.offset;
    }
    if (statement.width != 0) text << '/' << int{statement.width};
    for (const std::uint32_t number : statement.numbers) text << ' ' << number;
  }
  return text.str();
}

TEST(ImageScriptLines, StatementsOfALine) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {"  # pt", ""},
      {"BIN a", ""},
      {"bin a", "bin a"},
      {"bin a m", "bin a m"},
      {"bin a M", "bin a"},
      {"pt 80", "pt"},
      {"size a m", "size a"},
      {"sha a", "sha a"},
      {"dd 1 0x2", "dd/4 1 2"},
      {"dw 12345", "dw/2 12345"},
      {"db 1 zz 2 0x 3 4", "db/1 1 2 4"},
      {"db", "db/1"},
      // Positions have 64 bits.
      {"offset 123456789a", "offset 123456789a"},
      {"offset -1", "offset ffffffffffffffff"},
      {"offset zz", "offset 0"},
      {"offset", "offset 0"},
      // A word that is missing is the one before it.
      {"bin", "bin bin"},
      {"bin m", "bin m m"},
      {"sha", "sha sha"},
      // What a file's name, or the word behind it, makes of the line: only
      // keywords that stand later in the table come into question.
      {"bin pt", "bin pt; pt"},
      {"bin a pt", "bin a; pt"},
      {"bin a offset 1f dd 2", "bin a; offset 1f"},
      {"bin a db 7 zz", "bin a; db/1 7"},
      {"bin bin a", "bin bin"},
      {"pt bin a", "pt"},
      {"size sha", "size sha; sha sha"},
      {"sha size", "sha size"},
  };
  for (const auto& [line, statements] : cases) {
    EXPECT_EQ(statements, statements_of(line)) << line;
  }
}

}  // namespace
}  // namespace tova_fw_builder
