// inspect/inspect.h
// Recognises a file by its content and takes it apart.
#pragma once

#include <optional>

#include "inspect/byte_source.h"
#include "inspect/inspected.h"

namespace tova_fw_builder {

// How much is read. kTables: headers and tables, and a MiB of padding at most,
// so that it takes no time for a file of any length. kWhole: all padding is
// tested for bytes that aren't zero. The search of kEmbedded reads everything.
enum class Depth { kTables, kWhole };

// Takes the file apart as the format that is asked for, else as what it is.
// Fails for what the system can't read alone: of a damaged file what makes
// sense is in the tree, and what doesn't is told by the problems. The leaves
// with a length, padding among them, cover the file; contents may lie below
// other fields.
//
// A file with the texts of a private key in it is taken as safe_format tells,
// whatever is asked for.
Inspected inspect(const ByteSource& source, std::optional<Format> as = {},
                  Depth depth = Depth::kTables);

}  // namespace tova_fw_builder
