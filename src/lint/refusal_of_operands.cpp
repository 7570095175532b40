// A statement whose operands the builder refuses: which of them it is, and what
// was most likely meant.
#include <algorithm>

#include "companion/ground/nearest.h"
#include "definitions/inner_blocks.h"
#include "driver/ground/numbers.h"
#include "lint/refusal.h"
#include "lint/statement_forms.h"

namespace tova_fw_builder {

namespace {

struct Refused {
  const Definition& definition;
  const LintStatement& statement;
};

// Or a define was meant, and is misspelt where it is used.
std::string question(const Definition& definition, std::string_view word,
                     std::span<const std::string_view> names) {
  Nearest near(word);
  for (const std::string_view name : names) near.offer(name);
  for (const auto& define : definition.source.defines) near.offer(define.name);
  return near.question();
}

// At a word of the statement, or at its last one if it has fewer.
void point_at(std::size_t place, const Refused& refused, Finding& finding) {
  const auto& words = refused.statement.words;
  finding.spot = words[std::min(place, words.size() - 1)].spot;
}

void explain_generation(const Refused& refused, Finding& finding) {
  std::vector<std::string_view> generations;
  for (const auto& [word, value] : kGenerations) generations.push_back(word);
  point_at(1, refused, finding);
  finding.text +=
      "; there are 1.5, 1.8, 2.5 and 3.0" +
      question(refused.definition, word_at(refused.statement, 1), generations);
}

void explain_constant(const Refused& refused, Finding& finding) {
  const FwOutMap& map = *refused.definition.map;
  const auto& words = refused.statement.words;
  const std::string name =
      finding.text.substr(std::string_view("[module] Undefined const ").size());
  for (std::size_t i = 1; i < words.size(); ++i) {
    if (words[i].text == name) point_at(i, refused, finding);
  }
  const bool is_digits =
      !name.empty() && name.find_first_not_of("0123456789") == name.npos;
  if (words.size() < 2) {
    finding.text += "; the number is missing";
  } else if (is_digits) {
    finding.text += "; a number wants two characters here: +" + name;
  } else if (name.starts_with("0x") || name.starts_with("0X")) {
    finding.text += "; hexadecimal numbers have no 0x here: " +
                    in_quotes(std::string_view(name).substr(2));
  } else if (name.starts_with('#')) {
    finding.text +=
        "; a remark behind a constant is taken for one: put it on a line of "
        "its own";
  } else {
    Nearest near(name);
    for (const auto& [known, value] : map.consts) near.offer(known);
    for (const auto& define : refused.definition.source.defines) {
      near.offer(define.name);
    }
    finding.text += near.question();
    if (near.name().empty()) {
      finding.text += refused.definition.has_constants
                          ? "; the header doesn't define it"
                          : "; it is neither a number nor a constant";
    }
  }
}

// The operand that is no number, or out of range.
const LintWord* bad_operand(const Refused& refused) {
  const auto& words = refused.statement.words;
  const StatementForm* form = nullptr;
  for (const BlockKind kind : {BlockKind::kImage, BlockKind::kModule,
                               BlockKind::kGroup, BlockKind::kPin}) {
    if (form == nullptr) form = find_form(kind, refused.statement.key());
  }
  if (form == nullptr) return nullptr;
  for (std::size_t i = 1; i < words.size(); ++i) {
    const Operand operand =
        form->shape == Shape::kOperands && i <= form->operands.size()
            ? form->operands[i - 1]
            : Operand::kHex;
    const int base = base_of(operand);
    if (base == 0) continue;
    const ScannedNumber number = scan_number(words[i].text, base);
    const bool is_first_cap = form->shape == Shape::kSchedCaps && i == 1;
    const std::uint64_t most = operand == Operand::kHex32 ? 0xFFFFFFFF
                               : is_first_cap             ? 0xFFFF
                               : number.negative          ? 0x80000000
                                                          : 0x7FFFFFFF;
    if ((!number.has_digits && !number.prefixed) || number.magnitude > most) {
      return &words[i];
    }
  }
  return nullptr;
}

void explain_number(const Refused& refused, Finding& finding) {
  const LintWord* const word = bad_operand(refused);
  if (word == nullptr) {
    const bool wants_two = refused.statement.key() == "sched_caps";
    finding.spot = refused.statement.words.back().spot;
    finding.text += wants_two
                        ? "; sched_caps wants two numbers or more"
                        : "; the number is missing, and " +
                              in_quotes(refused.statement.words.back().text) +
                              " is taken for it";
    return;
  }
  finding.spot = word->spot;
  // Of sched_caps the builder says of a number, too, that it is none.
  const bool is_number =
      finding.text.find("out of range") != finding.text.npos ||
      scan_number(word->text, 10).has_digits;
  finding.text += "; " + in_quotes(word->text) +
                  (word->text.starts_with('#')
                       ? " is taken for a number: put the remark on a line of "
                         "its own"
                   : is_number ? " is too large"
                               : " is no number");
}

void explain_entry(const Refused& refused, Finding& finding) {
  // Only the group that is open still can have the other one.
  const LintBlock& group = refused.definition.blocks.back();
  for (const std::uint32_t number : group.statements) {
    const LintStatement& statement = refused.definition.statements[number];
    if (statement.key() != "entry") continue;
    finding.notes.push_back({statement.spot(), "the first one"});
    return;
  }
}

void explain_domain(const Refused& refused, Finding& finding) {
  const auto domains = domain_types();
  const auto& words = refused.statement.words;
  for (std::size_t i = 1; i < words.size(); ++i) {
    const std::string_view word = words[i].text;
    if (std::ranges::find(domains, word) != domains.end()) continue;
    point_at(i, refused, finding);
    finding.text += "; there are LL, DP and RTOS" +
                    question(refused.definition, word, domains);
    return;
  }
}

void explain_group_type(const Refused& refused, Finding& finding) {
  const std::size_t place =
      word_at(refused.statement, 1) == "on_demand" ? 2 : 1;
  point_at(place, refused, finding);
  finding.text += "; there are text, rodata and bss" +
                  question(refused.definition,
                           word_at(refused.statement, place), group_types());
}

void explain_uuid(const Refused& refused, Finding& finding) {
  point_at(1, refused, finding);
  finding.text += "; it has 8-4-4-4-12 hexadecimal digits and nothing behind";
}

void explain_count(const Refused& refused, Finding& finding) {
  point_at(1, refused, finding);
  const std::string fault = constant_fault(
      refused.definition.constants, constant_word(refused.statement).text);
  if (!fault.empty()) finding.text += "; " + fault;
}

void point_at_operand(const Refused& refused, Finding& finding) {
  point_at(1, refused, finding);
}

// By a part of the builder's message. The first one counts.
struct Explanation {
  std::string_view part;
  void (*add)(const Refused& refused, Finding& finding);
};
constexpr Explanation kExplanations[] = {
    {"Unknown binary version", explain_generation},
    {"[module] Undefined const ", explain_constant},
    {"[domain_types] Undefined const ", explain_domain},
    {"Invalid group type", explain_group_type},
    {"invalid sto", explain_number},
    {" argument out of range", explain_number},
    {"Wrong UUID format", explain_uuid},
    {"Double entry point", explain_entry},
    {"greater than zero", explain_count},
    {"stream type", point_at_operand},
};

}  // namespace

void explain_operands(const Definition& definition,
                      const LintStatement& statement, Finding& finding) {
  for (const Explanation& explanation : kExplanations) {
    if (finding.text.find(explanation.part) == finding.text.npos) continue;
    explanation.add({definition, statement}, finding);
    return;
  }
}

}  // namespace tova_fw_builder
