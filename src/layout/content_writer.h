// layout/content_writer.h
// Copies the bytes of the sections into the image.
#pragma once

#include <ostream>
#include <string>

#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Writes all modules of a connected map, in their order, from the stream's
// position on; sets each group's `file_offset`, each module's `hash` and the
// map's `image_end` (stream positions; all ones on a stream that has failed).
// Logs a table for each group.
//
// A group is a run of whole pages: its sections by load address, with zeros in
// the gaps and behind the last one, so that distances in the file are those of
// the load addresses. All of that is hashed. Ahead of an addon module's group
// (but for generation 1.5) stand zeros that keep its distance from the section
// written before it, to the alignment of the group's first section; they are
// not hashed, and none if that section has no contents. A group without
// contents writes nothing; so does a built-in module, whose hash stays zero.
//
// In generation 1.5 each addon module goes to a file of its own, `path` and
// addon_file_suffix.
//
// Throws std::runtime_error "Not recignized manifest type" for a module in an
// unknown generation, "Replacement section too large to fit into the
// placeholder", and "Section replacement header NAME not found". Failing reads
// yield zeros and failing writes are silent; hashes are right all the same.
// Holds a piece of a section in memory at a time.
void write_module_contents(FwOutMap& map, std::ostream& stream,
                           const std::string& path);

// "_", the module's UUID text and ".bin".
std::string addon_file_suffix(const FwOutMap::Module& module);

}  // namespace tova_fw_builder
