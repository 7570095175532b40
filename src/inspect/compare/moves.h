// inspect/compare/moves.h
#pragma once

#include <vector>

#include "inspect/compare/change.h"

namespace tova_fw_builder {

// Marks the changed places that follow from others, so `is_moved`:
// - a segment's vma or file_off behind a segment that grew, shrank, came or
//   went, or beside one that moved by the same distance, with nothing between
//   the two that stayed in its place; by less than a page also behind contents
//   that changed;
// - an entry point or a symbol that moved with its segment, or inside of
//   contents that changed;
// - a symbol's module index when it means the same module.
// Gives contents of a segment the address at which they run.
void mark_moves(const Field& old_root, const Field& new_root,
                std::vector<Change>& changes);

}  // namespace tova_fw_builder
