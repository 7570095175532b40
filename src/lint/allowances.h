// lint/allowances.h
// What the remarks "# lint: allow RULE..." of a definition silence.
#pragma once

#include "lint/findings.h"
#include "lint/source_map.h"

namespace tova_fw_builder {

// Whether one of the comment lines right above a finding's line, up to 200,
// allows its rule there. What the builder refuses is never allowed.
bool is_allowed(const SourceMap& source, const Finding& finding);

}  // namespace tova_fw_builder
