// Rules about files, includes, defines and remarks, which the statements never
// see.
#include <algorithm>
#include <set>

#include "companion/ground/nearest.h"
#include "definitions/inner_blocks.h"
#include "lint/allowances.h"
#include "lint/rule_functions.h"
#include "lint/rules.h"
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

void find_byte_order_marks(const Definition& definition, Findings& out) {
  const auto& files = definition.source.files;
  for (std::uint32_t i = 0; i < files.size(); ++i) {
    if (files[i].lines.empty()) continue;
    const std::string& line = files[i].lines.front();
    if (line.starts_with("\xEF\xBB\xBF")) {
      out.add({i, 1, 0, 3},
              "the file begins with a byte order mark, which joins its first "
              "word: save it as UTF-8 without one");
    } else if (line.starts_with("\xFF\xFE") || line.starts_with("\xFE\xFF")) {
      out.add({i, 1, 0, 2},
              "the file is UTF-16: save it as UTF-8 without a "
              "byte order mark");
    }
  }
}

void find_empty_includes(const Definition& definition, Findings& out) {
  for (const SourceMap::Place place : definition.source.empty_includes) {
    const bool is_top = place.file == 0;
    out.add(spot_of_word(definition.source, place, 1),
            std::string("the included file leaves no line, which ends this "
                        "file here") +
                (is_top ? " and loses all that is above it, too" : "") +
                ": begin the included file with an empty line");
  }
}

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
      out.add(word.spot, in_quotes(define.name) + " becomes " +
                             in_quotes(define.value) + " by a define")
          .notes.push_back(
              {spot_of_word(definition.source, define.place, 1), "the define"});
    }
  }
}

void find_unknown_rules(const Definition& definition, Findings& out) {
  const auto& files = definition.source.files;
  for (std::uint32_t file = 0; file < files.size(); ++file) {
    for (std::uint32_t line = 1; line <= files[file].lines.size(); ++line) {
      for (const LintWord& word :
           allowances_in(definition.source, {file, line})) {
        if (find_rule(word.text) != nullptr && word.text != kRefused) continue;
        Nearest near(word.text);
        for (const Rule& rule : rules()) near.offer(rule.id);
        out.add(word.spot, word.text == kRefused
                               ? "what the builder refuses can't be allowed"
                               : "there is no rule " + in_quotes(word.text) +
                                     near.question());
      }
    }
  }
}

}  // namespace tova_fw_builder
