// lint/refusal.h
#pragma once

#include <cstdint>

#include "lint/definition.h"
#include "lint/findings.h"

namespace tova_fw_builder {

// Points a refusal at the line where the files could not be joined, and adds
// what was most likely meant.
void explain_files(const Definition& definition, Finding& finding);

// An include at the top that leaves no line has lost all that is above it, too.
void find_lost_text(const Definition& definition, Findings& out);

// Notes where the define of that number gets its value.
void note_define(const SourceMap& source, std::uint32_t number,
                 Finding& finding);

}  // namespace tova_fw_builder
