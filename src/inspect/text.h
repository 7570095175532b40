// inspect/text.h
#pragma once

#include <ostream>
#include <string>

#include "companion/ground/colour.h"
#include "inspect/inspected.h"

namespace tova_fw_builder {

// A value for people, on one line and safe on a terminal: numbers in their
// radix, "yes" and "no", "-" for nothing and for no names, "(private)" for a
// private number.
std::string value_text(const Field& field);

// The tree for people: blocks of aligned labels and values, lists with columns
// as tables, a line for each member. In the long form every field of every
// member. Nothing is printed that could steer a terminal.
void print_fields(std::ostream& out, const Field& root, bool is_long,
                  const Colours& colours);

// A line for each problem, with its place; nothing if there is none.
void print_problems(std::ostream& out, const Inspected& inspected,
                    const Colours& colours);

}  // namespace tova_fw_builder
