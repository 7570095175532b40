// lint/report_json.h
// The findings as the one JSON document.
#pragma once

#include <ostream>
#include <string>

#include "lint/lint.h"

namespace tova_fw_builder {

// Prints the document that docs/schema/lint.json tells, one finding after the
// other. Paths as in the text.
void print_findings_json(std::ostream& out, const LintReport& report,
                         const std::string& folder);

}  // namespace tova_fw_builder
