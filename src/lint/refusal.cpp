// What the builder refuses in the text: its message, the place, and what was
// most likely meant.
#include "lint/refusal.h"

#include "lint/rule_functions.h"

namespace tova_fw_builder {

namespace {

void explain_statement(const Definition& definition, Finding& finding) {
  const LintStatement statement =
      words_of_line(definition.source, definition.refusal->line);
  finding.spot = statement.spot();
  if (finding.text.find("] Unknown parameter") != finding.text.npos) {
    explain_unknown_statement(definition, statement, finding);
  } else {
    explain_operands(definition, statement, finding);
  }
  const auto& place = definition.source.lines[definition.refusal->line].place;
  const std::string_view line = text_of_place(definition.source, place);
  if (line.find('\0') != line.npos) {
    finding.text += "; the line has a zero byte, which cuts texts off";
    if (definition.statements.empty()) {
      finding.text += ": is this an image definition?";
    }
  }
  for (const LintWord& word : statement.words) {
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
