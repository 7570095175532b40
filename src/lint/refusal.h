// lint/refusal.h
// What is added to the builder's message, by the sources that it stands in.
#pragma once

#include <cstdint>

#include "lint/definition.h"
#include "lint/findings.h"

namespace tova_fw_builder {

// refusal_of_files

// Points a refusal at the line where the files could not be joined, and adds
// what was most likely meant.
void explain_files(const Definition& definition, Finding& finding);

// An include at the top that leaves no line has lost all that is above it, too.
void find_lost_text(const Definition& definition, Findings& out);

// Notes where the define of that number gets its value.
void note_define(const SourceMap& source, std::uint32_t number,
                 Finding& finding);

// refusal_of_unknown_statements

// Adds to a refusal that points at `statement` what was most likely meant, and
// notes which blocks it has ended.
void explain_unknown_statement(const Definition& definition,
                               const LintStatement& statement,
                               Finding& finding);

// refusal_of_operands

// Points a refusal of `statement` at the operand at fault, and adds what was
// most likely meant.
void explain_operands(const Definition& definition,
                      const LintStatement& statement, Finding& finding);

}  // namespace tova_fw_builder
