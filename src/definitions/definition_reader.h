// definitions/definition_reader.h
// Stage one of the definition files: a tree of files becomes one text. Stage
// two, the statement readers, never sees a file.
#pragma once

#include <istream>
#include <memory>
#include <string>

#include "definitions/source_map.h"
#include "layout/records/out_map.h"

namespace tova_fw_builder {

// Flattens the definition file `path` with all that it includes
// (docs/definition-language.md, "Includes and defines"), and yields the text as
// a stream that stands at its start. Each word has exactly one blank behind it;
// a blank line is one blank.
//
// An included file that yields no text fails the stream of its includer, which
// takes no more; a caller of this function reads nothing from a failed one.
//
// Throws std::runtime_error "Max inclusion", "Not recognized define : " and the
// name, "Define name conflict : " and the name, "Definition files expand to too
// much text" (above 1 MiB, and 16 times as long as its files), and what
// open_image_defs throws. Leaves the working directory at the top file's. Fills
// `source` unless it is null.
std::unique_ptr<std::iostream> read_image_defs(FwOutMap& map,
                                               const std::string& path,
                                               SourceMap* source = nullptr);

}  // namespace tova_fw_builder
