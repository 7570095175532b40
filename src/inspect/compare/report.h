// inspect/compare/report.h
// A comparison for people and for programs.
#pragma once

#include <ostream>

#include "companion/ground/colour.h"
#include "companion/ground/json.h"
#include "inspect/compare/compare_files.h"

namespace tova_fw_builder {

// A line for each change, by file in folders; echoes are counted in a last line
// or, with `all`, shown with the reason. Nothing for what is equal.
void print_comparison(std::ostream& out, const Comparison& comparison, bool all,
                      const Colours& colours);

// {schema, equal, changes [{path, old, new, echo}], only_old, only_new}; the
// troubles are for the caller to add.
Json comparison_json(const Comparison& comparison);

}  // namespace tova_fw_builder
