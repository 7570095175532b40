#include "lint/source_map.h"

#include <algorithm>

namespace tova_fw_builder {

std::string_view TextLines::operator[](std::size_t number) const {
  const std::size_t begin = number == 0 ? 0 : ends_[number - 1];
  return std::string_view(text_).substr(begin, ends_[number] - begin);
}

void TextLines::push_back(std::string_view line) {
  text_ += line;
  ends_.push_back(text_.size());
}

void SourceMap::enter_file(const std::string& path) {
  const auto number = static_cast<std::uint32_t>(files.size());
  const auto [place, is_new] = file_numbers_.emplace(path, number);
  if (is_new) files.push_back({path, {}});
  open.push_back({place->second, 0});
  starts_.push_back({lines.size(), last_number_});
}

// A file that is included again has its lines already, or is about to.
void SourceMap::enter_line(std::string_view line) {
  Place& place = open.back();
  auto& known = files[place.file].lines;
  if (known.size() == place.line) known.push_back(line);
  ++place.line;
  line_start_ = line.data();
}

void SourceMap::add_line(bool is_taken) {
  takes_words_ = is_taken;
  awaits_key_ = is_taken;
  if (is_taken) ++last_number_;
}

void SourceMap::add_word(std::string_view word, bool is_replaced) {
  if (is_replaced) use_define(word);
  // The key of a blank line stands nowhere.
  if (!takes_words_ || word.empty()) return;
  if (awaits_key_) {
    lines.push_back(
        {open.back(), static_cast<std::uint32_t>(words.size()), last_number_});
    awaits_key_ = false;
  }
  words.push_back({static_cast<std::uint32_t>(word.data() - line_start_),
                   static_cast<std::uint32_t>(word.size()),
                   is_replaced ? define_numbers_.find(word)->second : kNone});
}

void SourceMap::add_define(std::string_view name, std::string_view value) {
  define_numbers_.emplace(name, static_cast<std::uint32_t>(defines.size()));
  defines.push_back({std::string(name), std::string(value), open.back()});
}

void SourceMap::use_define(std::string_view name) {
  defines[define_numbers_.find(name)->second].is_used = true;
}

void SourceMap::leave_file(Fate fate) {
  const Start start = starts_.back();
  starts_.pop_back();
  open.pop_back();
  if (fate == Fate::kEmpty) empty_includes.push_back(open.back());
  if (fate != Fate::kLost) return;
  last_number_ = start.number;
  if (start.line == lines.size()) return;
  words.resize(lines[start.line].first_word);
  lines.resize(start.line);
}

std::uint32_t SourceMap::line_at(std::uint64_t number) const {
  const auto found = std::ranges::lower_bound(
      lines, number, {},
      [](const Line& line) { return std::uint64_t{line.number}; });
  return static_cast<std::uint32_t>(found - lines.begin());
}

}  // namespace tova_fw_builder
