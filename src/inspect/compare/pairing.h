// inspect/compare/pairing.h
// Which member of a list in one file is which in the other.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "inspect/field.h"

namespace tova_fw_builder {

// Members of two lists that belong together; nullptr where there is none.
struct MemberPair {
  const Field* old_member = nullptr;
  const Field* new_member = nullptr;
  std::string key;  // what stands for it in a path; no two pairs have the same
  // Whether it stands elsewhere among those that both lists have.
  bool is_moved = false;
};

// Pairs the members of two lists, in the order of the old one; those that the
// new one alone has stand behind. Modules are paired by their UUIDs, and those
// that are left, or have none, or one that stands twice, by their names;
// symbols by name, files of a package by file name, all else by index.
std::vector<MemberPair> pair_members(const Field& old_list,
                                     const Field& new_list);

}  // namespace tova_fw_builder
