// lint/report_json.h
// The findings, for programs.
#pragma once

#include <string>

#include "companion/ground/json.h"
#include "lint/lint.h"

namespace tova_fw_builder {

// The document that docs/schema/lint.json tells. Paths as in the text.
Json findings_json(const LintReport& report, const std::string& folder);

// SARIF 2.1.0. Paths below `folder` are relative to the base SRCROOT, all
// others are URIs of files.
Json findings_sarif(const LintReport& report, const std::string& folder,
                    const std::string& version);

}  // namespace tova_fw_builder
