// What the builder refuses in the text: its message, the place, what was most
// likely meant, and which blocks an unknown word has ended.
#include "lint/refusal.h"

#include <algorithm>

#include "companion/ground/message_text.h"
#include "companion/ground/nearest.h"
#include "definitions/image_block.h"
#include "driver/ground/numbers.h"
#include "lint/rule_functions.h"
#include "lint/statement_forms.h"

namespace tova_fw_builder {

namespace {

constexpr std::string_view kGroupTypes[] = {"text", "rodata", "bss"};
constexpr std::string_view kDomains[] = {"LL", "DP", "RTOS"};

// Or a define was meant, and is misspelt where it is used.
std::string question(const Definition& definition, std::string_view word,
                     std::span<const std::string_view> names) {
  Nearest near(word);
  for (const std::string_view name : names) near.offer(name);
  for (const auto& define : definition.source.defines) near.offer(define.name);
  return near.question();
}

// Where the readers stood: the statement, and the blocks that it has ended.
struct Refused {
  const Definition& definition;
  LintStatement statement;
  std::vector<std::uint32_t> ended;  // blocks, the innermost first
};

Refused refused_statement(const Definition& definition) {
  const std::uint32_t line = definition.refusal->line;
  Refused refused{definition, words_of_line(definition.source, line), {}};
  for (std::uint32_t i = 0; i < definition.blocks.size(); ++i) {
    if (definition.blocks[i].ended_by == line) refused.ended.push_back(i);
  }
  std::ranges::reverse(refused.ended);
  return refused;
}

// At a word of the statement, or at its last one if it has fewer.
void point_at(std::size_t place, const Refused& refused, Finding& finding) {
  const auto& words = refused.statement.words;
  finding.spot = words[std::min(place, words.size() - 1)].spot;
}

BlockKind kind_of(const Definition& definition, std::uint32_t block) {
  return definition.blocks[block].kind;
}

std::string block_kind_name(BlockKind kind) {
  return kind == BlockKind::kModule  ? "a module"
         : kind == BlockKind::kGroup ? "a group"
         : kind == BlockKind::kPin   ? "a pin"
                                     : "the image";
}

// The lines behind the refused one that one of the ended blocks would have
// taken.
std::size_t count_left_out(const Refused& refused, std::uint32_t& last_line) {
  const auto& source = refused.definition.source;
  std::size_t count = 0;
  last_line = refused.definition.refusal->line;
  for (std::uint32_t i = last_line + 1; i < source.lines.size(); ++i) {
    const LintStatement next = words_of_line(source, i);
    if (next.key().empty()) continue;
    const bool is_taken =
        std::ranges::any_of(refused.ended, [&](std::uint32_t block) {
          return find_form(kind_of(refused.definition, block), next.key());
        });
    // A group that opens takes its own.
    const bool is_inner = find_form(BlockKind::kGroup, next.key()) != nullptr ||
                          find_form(BlockKind::kPin, next.key()) != nullptr;
    if (!is_taken && !is_inner) break;
    ++count;
    last_line = i;
  }
  return count;
}

std::string place_text(const SourceMap& source, std::uint32_t line) {
  return "line " + std::to_string(source.lines[line].place.line);
}

void note_ended_blocks(const Refused& refused, Finding& finding) {
  const Definition& definition = refused.definition;
  if (refused.ended.empty()) return;
  std::uint32_t last = 0;
  const std::size_t left_out = count_left_out(refused, last);
  for (const std::uint32_t block : refused.ended) {
    std::string text = block_name(definition, block) + " begins here and " +
                       in_quotes(refused.statement.key()) + " ends it";
    if (block == refused.ended.back() && left_out != 0) {
      text += "; " + counted(left_out, "statement") + " up to " +
              place_text(definition.source, last) + " would be left out";
    }
    finding.notes.push_back(
        {definition.statements[definition.blocks[block].opened_by].spot(),
         text});
  }
}

// A statement of a block that was ended ahead of it.
bool explain_stray(const Refused& refused, Finding& finding) {
  const Definition& definition = refused.definition;
  for (const BlockKind kind :
       {BlockKind::kModule, BlockKind::kGroup, BlockKind::kPin}) {
    if (find_form(kind, refused.statement.key()) == nullptr) continue;
    finding.text += "; " + in_quotes(refused.statement.key()) + " belongs in " +
                    block_kind_name(kind);
    for (std::size_t i = definition.blocks.size(); i-- > 0;) {
      const LintBlock& block = definition.blocks[i];
      if (block.kind != kind || block.ended_by == LintBlock::kNone) continue;
      const LintStatement by = words_of_line(definition.source, block.ended_by);
      finding.notes.push_back(
          {by.spot(), block_name(definition, static_cast<std::uint32_t>(i)) +
                          " ends here, as " + in_quotes(by.key()) +
                          " is no statement of " + block_kind_name(kind)});
      return true;
    }
    return true;
  }
  return false;
}

// A statement of a block that a module holds, and that isn't open.
std::string question_of_inner(const Refused& refused) {
  const bool is_in_module =
      std::ranges::any_of(refused.ended, [&](std::uint32_t block) {
        return kind_of(refused.definition, block) == BlockKind::kModule;
      });
  if (!is_in_module) return "";
  for (const BlockKind kind : {BlockKind::kGroup, BlockKind::kPin}) {
    Nearest near(refused.statement.key());
    for (const auto key : statement_keys(kind)) near.offer(key);
    if (near.name().empty()) continue;
    return "; " + in_quotes(near.name()) + " belongs in " +
           block_kind_name(kind) + near.question();
  }
  return "";
}

void explain_unknown(const Refused& refused, Finding& finding) {
  const Definition& definition = refused.definition;
  if (explain_stray(refused, finding)) {
    note_ended_blocks(refused, finding);
    return;
  }
  const std::string_view word = refused.statement.key();
  Nearest near(word);
  for (const std::uint32_t block : refused.ended) {
    for (const auto key : statement_keys(kind_of(definition, block))) {
      near.offer(key);
    }
  }
  for (const auto key : statement_keys(BlockKind::kImage)) near.offer(key);
  near.offer("include");
  near.offer("define");
  for (const SourceMap::Define& define : definition.source.defines) {
    if (define.name != word) continue;
    finding.text += "; a define can't stand for the first word of a line";
  }
  finding.text +=
      near.name().empty() ? question_of_inner(refused) : near.question();
  note_ended_blocks(refused, finding);
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
  const auto& words = refused.statement.words;
  for (std::size_t i = 1; i < words.size(); ++i) {
    const std::string_view word = words[i].text;
    if (std::ranges::find(kDomains, word) != std::end(kDomains)) continue;
    point_at(i, refused, finding);
    finding.text += "; there are LL, DP and RTOS" +
                    question(refused.definition, word, kDomains);
    return;
  }
}

void explain_group_type(const Refused& refused, Finding& finding) {
  const std::size_t place =
      word_at(refused.statement, 1) == "on_demand" ? 2 : 1;
  point_at(place, refused, finding);
  finding.text += "; there are text, rodata and bss" +
                  question(refused.definition,
                           word_at(refused.statement, place), kGroupTypes);
}

void explain_uuid(const Refused& refused, Finding& finding) {
  point_at(1, refused, finding);
  finding.text += "; it has 8-4-4-4-12 hexadecimal digits and nothing behind";
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
    {"] Unknown parameter", explain_unknown},
    {"Unknown binary version", explain_generation},
    {"[module] Undefined const ", explain_constant},
    {"[domain_types] Undefined const ", explain_domain},
    {"Invalid group type", explain_group_type},
    {"invalid sto", explain_number},
    {" argument out of range", explain_number},
    {"Wrong UUID format", explain_uuid},
    {"Double entry point", explain_entry},
    {"greater than zero", point_at_operand},
    {"stream type", point_at_operand},
};

void explain_statement(const Definition& definition, Finding& finding) {
  const Refused refused = refused_statement(definition);
  finding.spot = refused.statement.spot();
  for (const Explanation& explanation : kExplanations) {
    if (finding.text.find(explanation.part) == finding.text.npos) continue;
    explanation.add(refused, finding);
    break;
  }
  const auto& place = definition.source.lines[definition.refusal->line].place;
  if (definition.source.files[place.file].lines[place.line - 1].find('\0') !=
      std::string::npos) {
    finding.text += "; the line has a zero byte, which cuts texts off";
  }
  for (const LintWord& word : refused.statement.words) {
    if (word.spot != finding.spot || word.define == SourceMap::kNone) continue;
    note_define(definition.source, word.define, finding);
  }
}

}  // namespace

void find_refused(const Definition& definition, Findings& out) {
  if (definition.is_lost) find_lost_text(definition, out);
  if (!definition.refusal) return;
  Finding& finding = out.add({}, definition.refusal->text);
  if (definition.refusal->line != SourceMap::kNone) {
    explain_statement(definition, finding);
  } else {
    explain_files(definition, finding);
  }
}

}  // namespace tova_fw_builder
