// lint/report_text.h
// The findings, for people.
#pragma once

#include <ostream>
#include <string>

#include "companion/ground/colour.h"
#include "lint/lint.h"

namespace tova_fw_builder {

// Where files are shown from: a file below this folder by its path from there,
// any other by its whole path.
std::string shown_path(const std::string& path, const std::string& folder);

// "FILE:LINE:COLUMN: LEVEL: TEXT [RULE]", and a note in the same form for each
// note; with `shows_lines` the line and a caret under it.
void print_findings(std::ostream& out, const LintReport& report,
                    const std::string& folder, bool shows_lines,
                    const Colours& colours);

}  // namespace tova_fw_builder
