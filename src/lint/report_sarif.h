// lint/report_sarif.h
// The findings for code hosts and editors.
#pragma once

#include <string>

#include "companion/ground/json.h"
#include "lint/lint.h"

namespace tova_fw_builder {

// SARIF 2.1.0. Paths below `folder` are relative to the base SRCROOT, all
// others are URIs of files.
Json findings_sarif(const LintReport& report, const std::string& folder,
                    const std::string& version);

}  // namespace tova_fw_builder
