// lint/report_sarif.h
// The findings for code hosts and editors.
#pragma once

#include <ostream>
#include <string>

#include "lint/lint.h"

namespace tova_fw_builder {

// Prints SARIF 2.1.0, one finding after the other. Paths below `folder` are
// relative to the base SRCROOT, all others are URIs of files.
void print_findings_sarif(std::ostream& out, const LintReport& report,
                          const std::string& folder,
                          const std::string& version);

}  // namespace tova_fw_builder
