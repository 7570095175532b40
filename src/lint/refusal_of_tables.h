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
  Spot spot;         // a list as a whole, the line of a section table or a key
  std::string text;  // the builder's, and what it doesn't say
  std::vector<Note> notes;
};

// Where the builder stopped, which has read these inputs and fails with `text`.
// `elf_list` is the list as a whole; the key list's file is the one behind it.
UnreadTables explain_tables(const BuildInputs& inputs, Spot elf_list,
                            std::string text);

}  // namespace tova_fw_builder
