#include "lint/source_map.h"

namespace tova_fw_builder {

void SourceMap::enter_file(const std::string& path) {
  const auto number = static_cast<std::uint32_t>(files.size());
  const auto [place, is_new] = file_numbers_.emplace(path, number);
  if (is_new) files.push_back({path, {}});
  open.push_back({place->second, 0});
  lines_before_.push_back(lines.size());
}

// A file that is included again has its lines already, or is about to.
void SourceMap::enter_line(std::string_view line) {
  Place& place = open.back();
  auto& known = files[place.file].lines;
  if (known.size() == place.line) known.emplace_back(line);
  ++place.line;
  line_start_ = line.data();
}

void SourceMap::add_line(bool is_taken) {
  takes_words_ = is_taken;
  if (!is_taken) return;
  lines.push_back({open.back(), static_cast<std::uint32_t>(words.size())});
}

void SourceMap::add_word(std::string_view word, bool is_replaced) {
  if (is_replaced) use_define(word);
  if (!takes_words_) return;
  // The key of a blank line stands nowhere.
  const auto column = word.empty() ? 0 : word.data() - line_start_;
  words.push_back({static_cast<std::uint32_t>(column),
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
  const std::size_t before = lines_before_.back();
  lines_before_.pop_back();
  open.pop_back();
  if (fate == Fate::kEmpty) empty_includes.push_back(open.back());
  if (fate != Fate::kLost || before == lines.size()) return;
  words.resize(lines[before].first_word);
  lines.resize(before);
}

}  // namespace tova_fw_builder
