// Statements with words that are missing or too many, and those that stand
// twice. The readers never refuse these: a statement takes what it knows and
// leaves the rest.
#include <algorithm>
#include <map>
#include <utility>

#include "lint/rule_functions.h"
#include "lint/statement_forms.h"

namespace tova_fw_builder {

namespace {

// Calls take(words, operands) for each line that the flattening consumes:
// `define NAME VALUE` and `include FILE`. Of the words behind the operands it
// gets the first.
template <typename Take>
void for_each_directive(const Definition& definition, const Take& take) {
  const auto& files = definition.source.files;
  for (std::uint32_t file = 0; file < files.size(); ++file) {
    for (std::uint32_t line = 1; line <= files[file].lines.size(); ++line) {
      const Statement text(files[file].lines[line - 1]);
      const bool is_define = text.word() == "define";
      if (!is_define && text.word() != "include") continue;
      const std::size_t operands = is_define ? 2 : 1;
      take(words_of_place(definition.source, {file, line}, operands + 2),
           operands);
    }
  }
}

// These take nothing in place of what is missing.
std::string_view left_as_it_was(const StatementForm& form) {
  switch (form.shape) {
    case Shape::kText:
      return "the name stays empty";
    case Shape::kDomains:
      return "it changes nothing";
    case Shape::kModCfg:
    case Shape::kSchedCaps:
      return "all its numbers are 0";
    default:
      return form.key == "binary_name" ? "it changes nothing" : "";
  }
}

std::string missing_text(const StatementForm& form,
                         const LintStatement& statement, const Taken& taken) {
  const std::string key(form.key);
  const std::string last = in_quotes(statement.words.back().text);
  if (form.shape == Shape::kSchedCaps && statement.words.size() == 2) {
    return key + " wants two numbers: the blank behind " + last +
           " makes it stand twice";
  }
  if (const auto effect = left_as_it_was(form); !effect.empty()) {
    return key + " lacks its operand: " + std::string(effect);
  }
  if (form.shape == Shape::kSection && statement.words.size() > 1) {
    return last == "'<'" && taken.needed > taken.name + 1
               ? "'<' lacks the replacement behind it: there is none"
               : key + " lacks its name behind " + last + ": it is empty";
  }
  if (form.shape == Shape::kModule && statement.words.size() == 2) {
    return "module lacks its name behind the kind " + last +
           ": the module is called " + last;
  }
  return key + " lacks an operand: " + last + " is taken once more";
}

void find_echo(const StatementForm& form, const LintStatement& statement,
               const Taken& taken, Findings& out) {
  const std::size_t count = statement.words.size();
  const bool is_taken =
      form.shape == Shape::kText
          ? count > 1
          : form.shape == Shape::kModCfg && count > 1 && count < taken.end;
  if (!statement.has_echo || !is_taken) return;
  out.add(statement.words.back().spot,
          "the blank behind " + in_quotes(statement.words.back().text) +
              " makes it stand twice: cut it off");
}

// A list takes all words, but a remark is no part of it. Yields whether there
// is one.
bool find_remark(const StatementForm& form, const LintStatement& statement,
                 const Taken& taken, Findings& out) {
  const bool is_text = form.shape == Shape::kText;
  if (!is_text && form.shape != Shape::kModCfg) return false;
  const auto remark = std::ranges::find_if(
      statement.words,
      [](const LintWord& word) { return word.text.starts_with('#'); });
  const auto place = static_cast<std::size_t>(remark - statement.words.begin());
  if (place >= std::min(taken.end, statement.words.size())) return false;
  out.add(remark->spot,
          is_text ? "the remark becomes a part of the name: put it on a line "
                    "of its own"
                  : "a remark behind a number is no comment: put it on a line "
                    "of its own");
  return true;
}

// What was meant by a word behind the last operand.
std::string extra_text(const StatementForm& form,
                       const LintStatement& statement, std::size_t place) {
  const std::string_view word = statement.words[place].text;
  const std::string text = in_quotes(word) + " is ignored: ";
  if (word.starts_with('#')) {
    return "a remark behind an operand is no comment: put it on a line of its "
           "own";
  }
  if (form.shape == Shape::kSection && word.starts_with('<')) {
    return text + "put a blank behind the '<'";
  }
  if (form.shape == Shape::kSection && (word == "ep" || word == "o")) {
    return text + "the marker stands ahead of the name";
  }
  if (form.shape == Shape::kExport && word == "o") {
    return text + "the marker stands ahead of the symbol";
  }
  if (form.shape == Shape::kGroup && word == "on_demand") {
    return text + "on_demand stands ahead of the type";
  }
  if (form.shape == Shape::kSection) return text + "a line for each section";
  return text + std::string(form.key) + " takes no more";
}

}  // namespace

void find_missing_operands(const Definition& definition, Findings& out) {
  for (const LintStatement& statement : definition.statements) {
    const StatementForm& form = *form_of(definition, statement);
    const Taken taken = taken_words(form, statement);
    if (statement.words.size() >= taken.needed) continue;
    out.add(statement.words.back().spot, missing_text(form, statement, taken));
  }
  for_each_directive(definition, [&](const auto& words, std::size_t operands) {
    if (operands != 2 || words.size() > operands) return;
    out.add(words.back().spot,
            words.size() == 1 ? "define lacks a name and a value"
                              : "define lacks a value: the word disappears");
  });
}

void find_extra_words(const Definition& definition, Findings& out) {
  for (const LintStatement& statement : definition.statements) {
    const StatementForm& form = *form_of(definition, statement);
    const Taken taken = taken_words(form, statement);
    find_echo(form, statement, taken, out);
    if (find_remark(form, statement, taken, out)) continue;
    if (form.shape == Shape::kSection && taken.name < statement.words.size() &&
        word_at(statement, taken.name).find('<', 1) != std::string_view::npos) {
      out.add(statement.words[taken.name].spot,
              in_quotes(word_at(statement, taken.name)) +
                  " is one name: put a blank on each side of the '<'");
    }
    if (statement.words.size() <= taken.end) continue;
    // unknown-kind tells of it.
    if (form.shape == Shape::kModule && taken.name == 1 &&
        !word_at(statement, 2).starts_with('#')) {
      continue;
    }
    out.add(statement.words[taken.end].spot,
            extra_text(form, statement, taken.end));
  }
  for_each_directive(definition, [&](const auto& words, std::size_t operands) {
    if (words.size() <= 1 + operands) return;
    const LintWord& word = words[1 + operands];
    out.add(word.spot, in_quotes(word.text) +
                           " is ignored: " + std::string(words[0].text) +
                           (operands == 2 ? " takes one word for a value"
                                          : " takes one name"));
  });
}

void find_repeated_statements(const Definition& definition, Findings& out) {
  // By block and key; a group by its type. Exports are those of the image.
  std::map<std::pair<std::uint32_t, std::string>, const LintStatement*> seen;
  for (const LintStatement& statement : definition.statements) {
    const StatementForm& form = *form_of(definition, statement);
    const bool is_group = form.shape == Shape::kGroup;
    const bool is_export = form.shape == Shape::kExport;
    if (!form.once && !is_group && !is_export) continue;
    std::string what(form.key);
    if (is_group || is_export) {
      what.append(" ").append(name_of(statement, BlockKind::kModule));
    }
    const std::uint32_t block = is_export ? 0 : statement.block;
    const auto [place, is_new] = seen.try_emplace({block, what}, &statement);
    if (is_new) continue;
    const LintStatement& first = *std::exchange(place->second, &statement);
    // The same again changes nothing.
    if (is_export &&
        taken_words(form, statement).name == taken_words(form, first).name) {
      continue;
    }
    out.add(statement.spot(),
            what + " stands here once more: " +
                (is_group ? "the module's entry tells of this one alone"
                          : "this one counts"))
        .notes.push_back({first.spot(), "the earlier one"});
  }
}

}  // namespace tova_fw_builder
