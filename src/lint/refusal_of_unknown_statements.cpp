// A statement that no open block knows: what was most likely meant, and which
// blocks it has ended.
#include <algorithm>

#include "companion/ground/message_text.h"
#include "companion/ground/nearest.h"
#include "definitions/image_block.h"
#include "lint/refusal.h"
#include "lint/statement_forms.h"

namespace tova_fw_builder {

namespace {

// Where the readers stood: the statement, and the blocks that it has ended.
struct Refused {
  const Definition& definition;
  const LintStatement& statement;
  std::vector<std::uint32_t> ended;  // blocks, the innermost first
};

Refused refused_statement(const Definition& definition,
                          const LintStatement& statement) {
  Refused refused{definition, statement, {}};
  for (std::uint32_t i = 0; i < definition.blocks.size(); ++i) {
    if (definition.blocks[i].ended_by == definition.refusal->line) {
      refused.ended.push_back(i);
    }
  }
  std::ranges::reverse(refused.ended);
  return refused;
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

}  // namespace

void explain_unknown_statement(const Definition& definition,
                               const LintStatement& statement,
                               Finding& finding) {
  const Refused refused = refused_statement(definition, statement);
  if (explain_stray(refused, finding)) {
    note_ended_blocks(refused, finding);
    return;
  }
  const std::string_view word = statement.key();
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
  const std::string question =
      near.name().empty() ? question_of_inner(refused) : near.question();
  finding.text += question;
  // Another kind of file, as a list of ELFs, begins like this.
  if (question.empty() && definition.statements.empty()) {
    finding.text += "; is this an image definition?";
  }
  note_ended_blocks(refused, finding);
}

}  // namespace tova_fw_builder
