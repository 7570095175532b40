// Words are views, since a line may be of any length and each copy of it would
// count.
#include "definitions/statement.h"

#include <algorithm>

#include "driver/ground/numbers.h"

namespace tova_fw_builder {

// Leaves `word` as it is when there is none.
bool Statement::take(std::string_view& word) {
  const auto start =
      std::find_if_not(rest_.begin(), rest_.end(), is_white_space);
  const auto end = std::find_if(start, rest_.end(), is_white_space);
  const bool taken = start != end;
  if (taken) word = {start, end};
  // Also if no word was taken: the white space is gone, and at_end() holds.
  rest_ = {end, rest_.end()};
  return taken;
}

std::string_view Statement::next_word() {
  take(word_);
  return word_;
}

std::string_view Statement::next_operand() {
  std::string_view operand;
  take(operand);
  return operand;
}

std::int32_t Statement::next_signed(int base) {
  return parse_signed(next_word(), base);
}

std::uint32_t Statement::next_unsigned(int base) {
  return parse_unsigned(next_word(), base);
}

}  // namespace tova_fw_builder
