// inspect/json.h
#pragma once

#include <ostream>

#include "companion/ground/json.h"
#include "inspect/inspected.h"

namespace tova_fw_builder {

// The value of a field, or its members but for those that the list of bytes
// alone shows. Names become a list of texts; nothing, contents, padding and
// reserved zeros are null.
Json field_json(const Field& field);

// Prints a member of a JSON object on lines of its own, `indent` blanks deep,
// without a comma or a newline behind it: "name": value. As field_json makes
// it, but with nothing else in memory.
void print_member(std::ostream& out, const Field& field, std::size_t indent);

// The same for the problems, [{offset, text}].
void print_problems_member(std::ostream& out, const Inspected& inspected,
                           std::size_t indent);

}  // namespace tova_fw_builder
