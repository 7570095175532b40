#include "definitions/source_map.h"

namespace tova_fw_builder {

void SourceMap::enter_file(const std::string& path) {
  const auto number = static_cast<std::uint32_t>(files.size());
  const auto [place, is_new] = file_numbers_.emplace(path, number);
  if (is_new) files.push_back({path, {}});
  open.push_back({place->second, 0});
}

// A file that is included again has its lines already, or is about to.
void SourceMap::enter_line(std::string_view line) {
  Place& place = open.back();
  auto& known = files[place.file].lines;
  if (known.size() == place.line) known.emplace_back(line);
  ++place.line;
  line_start_ = line.data();
}

void SourceMap::add_word(std::string_view word, std::uint32_t define) {
  // The key of a blank line stands nowhere.
  const auto column = word.empty() ? 0 : word.data() - line_start_;
  words.push_back({static_cast<std::uint32_t>(column),
                   static_cast<std::uint32_t>(word.size()), define});
}

void SourceMap::drop_lines(std::size_t from) {
  if (from >= lines.size()) return;
  words.resize(lines[from].first_word);
  lines.resize(from);
}

void SourceMap::add_define(std::string_view name, std::string_view value) {
  define_numbers_.emplace(name, static_cast<std::uint32_t>(defines.size()));
  defines.push_back({std::string(name), std::string(value), open.back()});
}

std::uint32_t SourceMap::use_define(std::string_view name) {
  const std::uint32_t number = define_numbers_.find(name)->second;
  defines[number].is_used = true;
  return number;
}

}  // namespace tova_fw_builder
