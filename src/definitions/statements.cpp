// Lines and words of the flattened definitions. An empty held line means that
// none is held: blank lines never end a block, so none is ever given back.
#include "definitions/statements.h"

#include <utility>

#include "driver/numbers.h"
#include "driver/text_reader.h"

namespace tova_fw_builder {

std::string StatementLines::take() {
  if (!held_.empty()) return std::exchange(held_, {});
  ++number_;
  std::string line;
  std::getline(stream_, line);
  return line;
}

Statement::Statement(const std::string& line) : rest(line) {
  next_word_or_keep(rest, word);
}

const std::string& Statement::next_word() {
  next_word_or_keep(rest, word);
  return word;
}

std::int32_t Statement::next_signed(int base) {
  return parse_signed(next_word(), base);
}

std::uint32_t Statement::next_unsigned(int base) {
  return parse_unsigned(next_word(), base);
}

}  // namespace tova_fw_builder
