#include "address_lookup/address_words.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string>
#include <vector>

#include "driver/ground/numbers.h"

namespace tova_fw_builder {
namespace {

bool is_prefixed(std::string_view word) {
  return word.starts_with("0x") || word.starts_with("0X");
}

bool is_word_character(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') ||
         (c >= 'a' && c <= 'z') || c == '_';
}

std::vector<std::string_view> words_of(std::string_view line) {
  std::vector<std::string_view> words;
  while (!line.empty()) {
    const auto start = std::ranges::find_if(line, is_word_character);
    line.remove_prefix(static_cast<std::size_t>(start - line.begin()));
    const auto end = std::ranges::find_if_not(line, is_word_character);
    const auto length = static_cast<std::size_t>(end - line.begin());
    if (length != 0) words.push_back(line.substr(0, length));
    line.remove_prefix(length);
  }
  return words;
}

}  // namespace

std::optional<std::uint32_t> parse_address(std::string_view text) {
  if (is_prefixed(text)) text.remove_prefix(2);
  const auto is_digit = [](char c) { return hex_digit_value(c) >= 0; };
  if (text.empty() || !std::ranges::all_of(text, is_digit)) return {};
  const ScannedNumber number = scan_number(text, 16);
  if (number.magnitude > std::numeric_limits<std::uint32_t>::max()) {
    return {};
  }
  return static_cast<std::uint32_t>(number.magnitude);
}

void find_addresses(std::istream& in,
                    const std::function<void(std::uint32_t)>& take) {
  std::array<char, 4097> line;
  while (in.good()) {
    in.getline(line.data(), line.size());
    // The end of the line is counted, too, where it was reached.
    const auto length =
        static_cast<std::size_t>(in.gcount() - (in.good() ? 1 : 0));
    if (in.fail() && !in.eof() && in.gcount() != 0) in.clear();
    const auto words = words_of({line.data(), length});
    for (const std::string_view word : words) {
      if (!is_prefixed(word) && word.size() != 8 && words.size() != 1) continue;
      if (const auto address = parse_address(word)) take(*address);
    }
  }
}

}  // namespace tova_fw_builder
