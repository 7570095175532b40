// Rules about defines. The statements see their values alone; which define made
// a word is noted with the word.
#include <algorithm>
#include <cstddef>
#include <map>
#include <set>
#include <string_view>

#include "definitions/inner_blocks.h"
#include "lint/rule_functions.h"
#include "lint/statement_forms.h"

namespace tova_fw_builder {

namespace {

// All that a reader compares a word with, but for names.
const std::set<std::string_view>& known_words() {
  static const std::set<std::string_view> words = [] {
    std::set<std::string_view> all = {"ep",        "o",       "<",
                                      "on_demand", "include", "define"};
    for (const StatementForm& form : statement_forms()) all.insert(form.key);
    for (const auto& some : {module_kinds(), group_types(), domain_types()}) {
      all.insert(some.begin(), some.end());
    }
    return all;
  }();
  return words;
}

// Defines are written in capitals, so that one sees them.
bool looks_like_define(std::string_view word) {
  return std::ranges::none_of(
      word, [](char c) { return c == '.' || (c >= 'a' && c <= 'z'); });
}

bool is_section_name(const StatementForm& form, const Taken& taken,
                     std::size_t place) {
  if (form.operands[0] == Operand::kSection) return place == 1;
  if (form.shape != Shape::kSection) return false;
  return place == taken.name || place == taken.name + 2;
}

}  // namespace

void find_unused_defines(const Definition& definition, Findings& out) {
  // What uses it may stand behind the place of a refusal.
  const auto& refusal = definition.refusal;
  if (refusal && refusal->line == SourceMap::kNone) return;
  for (const SourceMap::Define& define : definition.source.defines) {
    if (define.is_used) continue;
    out.add(spot_of_word(definition.source, define.place, 1),
            "the define " + in_quotes(define.name) + " changes nothing");
  }
}

void find_capturing_defines(const Definition& definition, Findings& out) {
  // Sought once: it may stand far behind in its line.
  std::map<std::uint32_t, Spot> spots;
  for (const LintStatement& statement : definition.statements) {
    const StatementForm& form = *form_of(definition, statement);
    const Taken taken = taken_words(form, statement);
    for (std::size_t i = 1; i < statement.words.size(); ++i) {
      const LintWord& word = statement.words[i];
      if (word.define == SourceMap::kNone) continue;
      const auto& define = definition.source.defines[word.define];
      const bool is_word = known_words().contains(define.name);
      if (!is_word && (!is_section_name(form, taken, i) ||
                       looks_like_define(define.name))) {
        continue;
      }
      const auto [spot, is_new] = spots.try_emplace(word.define);
      if (is_new) {
        spot->second = spot_of_word(definition.source, define.place, 1);
      }
      out.add(word.spot, in_quotes(define.name) + " becomes " +
                             in_quotes(define.value) + " by a define")
          .notes.push_back({spot->second, "the define"});
    }
  }
}

}  // namespace tova_fw_builder
