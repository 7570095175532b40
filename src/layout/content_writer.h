// layout/content_writer.h
// Copies the bytes of the sections into the image.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>

#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Writes all modules of a connected map, in their order, from the stream's
// position on: docs/file-formats.md, "Firmware binary". In generation 1.5 each
// addon goes to a file of its own, `path` and addon_file_suffix. Sets each
// written group's `file_offset`, each loadable module's `hash` and the map's
// `image_end` (stream positions; all ones on a stream that has failed). Logs a
// table for each group.
//
// Throws std::runtime_error "Not recignized manifest type" for a module in an
// unknown generation, and what choose_source throws. Failing reads yield zeros
// and failing writes are silent; hashes are right all the same.
void write_module_contents(FwOutMap& map, std::ostream& stream,
                           const std::string& path);

// The zeros that an addon module's group from 1.8 on has ahead of it, behind
// the section written last: by how much its load address is above that one's
// end, in whole alignments; 0 if its first section has no contents.
std::uint32_t addon_pad(const FwImageMap::SectionHeader& previous,
                        const FwOutMap::SectionGroup& group);

}  // namespace tova_fw_builder
