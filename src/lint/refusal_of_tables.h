// lint/refusal_of_tables.h
// What the builder refuses while it reads the key list and what the ELF list
// names.
#pragma once

#include <string>
#include <vector>

#include "layout/build_core.h"
#include "lint/findings.h"

namespace tova_fw_builder {

struct UnreadTables {
  Spot spot;         // the list as a whole, or the line of a section table
  std::string text;  // the builder's, and what it doesn't say
  std::vector<Note> notes;
};

// Where the builder stopped, which has read these inputs and fails with `text`.
// `elf_list` is the list as a whole.
UnreadTables explain_tables(const BuildInputs& inputs, Spot elf_list,
                            std::string text);

}  // namespace tova_fw_builder
