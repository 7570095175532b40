// The remarks are no part of the flattened text, so they are looked for in the
// lines of the files.
#include "lint/allowances.h"

#include <algorithm>
#include <vector>

#include "definitions/statement.h"
#include "lint/definition.h"
#include "lint/rule_functions.h"
#include "lint/rules.h"

namespace tova_fw_builder {

namespace {

// The rules of a remark, each as a word of its file; blanks or commas part
// them. None if the line is no such remark.
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

// Those of the remarks above a line.
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

}  // namespace

bool is_allowed(const SourceMap& source, const Finding& finding) {
  if (finding.rule == kRefused) return false;
  const auto allowed =
      allowances_above(source, {finding.spot.file, finding.spot.line});
  return std::ranges::any_of(
      allowed, [&](const LintWord& word) { return word.text == finding.rule; });
}

void find_unknown_rules(const Definition& definition, Findings& out) {
  const auto& files = definition.source.files;
  for (std::uint32_t file = 0; file < files.size(); ++file) {
    for (std::uint32_t line = 1; line <= files[file].lines.size(); ++line) {
      for (const LintWord& word :
           allowances_in(definition.source, {file, line})) {
        if (find_rule(word.text) != nullptr && word.text != kRefused) continue;
        out.add(word.spot, word.text == kRefused
                               ? "what the builder refuses can't be allowed"
                               : no_rule_text(word.text));
      }
    }
  }
}

}  // namespace tova_fw_builder
