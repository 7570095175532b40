#include "lint/allowances.h"

#include "definitions/statement.h"

namespace tova_fw_builder {

std::vector<LintWord> allowances_in(const SourceMap& source,
                                    SourceMap::Place place) {
  const std::string& line = source.files[place.file].lines[place.line - 1];
  // Most lines are no remark.
  if (line.find("lint:") == line.npos) return {};
  std::vector<LintWord> words = words_of_place(source, place);
  std::size_t first = 0;
  if (words.front().text == "#") ++first;
  const auto is = [&](std::size_t i, std::string_view text) {
    return i < words.size() && words[i].text == text;
  };
  if (!(first == 0 ? is(0, "#lint:") : is(1, "lint:"))) return {};
  if (!is(first + 1, "allow")) return {};
  words.erase(words.begin(),
              words.begin() + static_cast<std::ptrdiff_t>(first) + 2);
  for (LintWord& word : words) {
    while (word.text.ends_with(',')) {
      word.text.remove_suffix(1);
      --word.spot.length;
    }
  }
  return words;
}

// Each finding asks for them anew, and may stand among remarks itself.
constexpr std::uint32_t kMostRemarks = 200;

std::vector<LintWord> allowances_above(const SourceMap& source,
                                       SourceMap::Place place) {
  std::vector<LintWord> allowed;
  if (place.file >= source.files.size()) return allowed;
  const auto& lines = source.files[place.file].lines;
  const std::uint32_t last =
      place.line > kMostRemarks ? place.line - kMostRemarks : 1;
  for (std::uint32_t line = place.line; line > last; --line) {
    const Statement above(lines[line - 2]);
    if (!above.word().starts_with('#')) break;
    const auto more = allowances_in(source, {place.file, line - 1});
    allowed.insert(allowed.end(), more.begin(), more.end());
  }
  return allowed;
}

}  // namespace tova_fw_builder
