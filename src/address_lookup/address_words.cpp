#include "address_lookup/address_words.h"

#include <algorithm>
#include <cstring>
#include <limits>
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

// Takes what is at hand, so that a stream that is tied is flushed for each
// piece and not for each line.
class LogLines {
 public:
  explicit LogLines(std::istream& in) : in_(in), buffer_(1 << 16) {}

  std::optional<std::string_view> next() {
    const auto length = [this] {
      return rest().substr(0, kLongest + 1).find('\n');
    };
    while (length() == rest().npos && rest().size() <= kLongest && read()) {
    }
    if (rest().empty()) return {};
    const bool has_end = length() != rest().npos;
    const auto line = rest().substr(0, has_end ? length() : kLongest);
    begin_ += line.size() + (has_end ? 1 : 0);
    return line;
  }

 private:
  static constexpr std::size_t kLongest = 4096;

  std::string_view rest() const {
    return {buffer_.data() + begin_, end_ - begin_};
  }

  // One character may have to be waited for.
  bool read() {
    std::memmove(buffer_.data(), rest().data(), rest().size());
    end_ -= begin_;
    begin_ = 0;
    if (!in_.get(buffer_[end_])) return false;
    ++end_;
    const auto room = static_cast<std::streamsize>(buffer_.size() - end_);
    end_ += static_cast<std::size_t>(in_.readsome(&buffer_[end_], room));
    return true;
  }

  std::istream& in_;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
};

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
  LogLines lines(in);
  while (const auto line = lines.next()) {
    const auto words = words_of(*line);
    for (const std::string_view word : words) {
      if (!is_prefixed(word) && word.size() != 8 && words.size() != 1) continue;
      if (const auto address = parse_address(word)) take(*address);
    }
  }
}

}  // namespace tova_fw_builder
