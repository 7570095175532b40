// lint/allowances.h
#pragma once

#include <vector>

#include "lint/definition.h"
#include "lint/source_map.h"

namespace tova_fw_builder {

// The rules that the comment lines right above a line, up to 200, allow there
// by
// "# lint: allow RULE...", each as a word of its file. Blanks or commas part
// the rules.
std::vector<LintWord> allowances_above(const SourceMap& source,
                                       SourceMap::Place place);

// Those of one line; none if it is no such comment.
std::vector<LintWord> allowances_in(const SourceMap& source,
                                    SourceMap::Place place);

}  // namespace tova_fw_builder
