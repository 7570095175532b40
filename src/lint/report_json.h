// lint/report_json.h
// The findings as the one JSON document.
#pragma once

#include <string>

#include "companion/ground/json.h"
#include "lint/lint.h"

namespace tova_fw_builder {

// The document that docs/schema/lint.json tells. Paths as in the text.
Json findings_json(const LintReport& report, const std::string& folder);

}  // namespace tova_fw_builder
