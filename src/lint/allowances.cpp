// The remarks are no part of the flattened text, so they are looked for in the
// lines of the files.
#include "lint/allowances.h"

#include <algorithm>

#include "definitions/statement.h"
#include "lint/definition.h"
#include "lint/rule_functions.h"
#include "lint/rules.h"

namespace tova_fw_builder {

namespace {

// Calls take(word) for each rule of a remark, as a word of its file; blanks or
// commas part them. Not at all if the line is no such remark.
template <typename Take>
void for_each_allowance(const SourceMap& source, SourceMap::Place place,
                        const Take& take) {
  const std::string_view line = text_of_place(source, place);
  // Most lines are no remark.
  if (line.find("lint:") == line.npos) return;
  PlaceWords words(source, place);
  const auto next_is = [&words](std::string_view text) {
    const auto word = words.next();
    return word && word->text == text;
  };
  const std::string_view first = words.next()->text;
  if (first == "#" ? !next_is("lint:") : first != "#lint:") return;
  if (!next_is("allow")) return;
  for (auto word = words.next(); word; word = words.next()) {
    while (word->text.ends_with(',')) {
      word->text.remove_suffix(1);
      --word->spot.length;
    }
    take(*word);
  }
}

// The first line behind a comment that is none.
std::uint32_t end_of_comments(const TextLines& lines, std::uint32_t line) {
  while (line < lines.size() &&
         Statement(lines[line]).word().starts_with('#')) {
    ++line;
  }
  return line + 1;
}

}  // namespace

Allowances::Allowances(const SourceMap& source) {
  for (std::uint32_t file = 0; file < source.files.size(); ++file) {
    const TextLines& lines = source.files[file].lines;
    std::uint32_t ends = 0;
    for (std::uint32_t line = 1; line <= lines.size(); ++line) {
      for_each_allowance(source, {file, line}, [&](const LintWord& word) {
        const Rule* const rule = find_rule(word.text);
        if (rule == nullptr || rule->id == kRefused) return;
        if (ends <= line) ends = end_of_comments(lines, line);
        auto& remarks = remarks_[{file, rule->id}];
        // A remark may name a rule any number of times.
        if (!remarks.empty() && remarks.back().line == line) return;
        remarks.push_back({line, ends});
      });
    }
  }
}

bool Allowances::allow(const Finding& finding) const {
  constexpr std::uint32_t kMostComments = 200;
  const auto found = remarks_.find({finding.spot.file, finding.rule});
  if (found == remarks_.end()) return false;
  // The last one above the finding: the others end where it does, or before.
  const auto& remarks = found->second;
  const auto behind =
      std::ranges::lower_bound(remarks, finding.spot.line, {}, &Remark::line);
  if (behind == remarks.begin()) return false;
  const Remark& remark = *std::prev(behind);
  return finding.spot.line <= remark.ends &&
         finding.spot.line - remark.line <= kMostComments;
}

void find_unknown_rules(const Definition& definition, Findings& out) {
  const auto& files = definition.source.files;
  for (std::uint32_t file = 0; file < files.size(); ++file) {
    for (std::uint32_t line = 1; line <= files[file].lines.size(); ++line) {
      for_each_allowance(
          definition.source, {file, line}, [&](const LintWord& word) {
            if (find_rule(word.text) != nullptr && word.text != kRefused) {
              return;
            }
            out.add(word.spot, word.text == kRefused
                                   ? "what the builder refuses can't be allowed"
                                   : no_rule_text(word.text));
          });
    }
  }
}

}  // namespace tova_fw_builder
