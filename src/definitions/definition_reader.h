// definitions/definition_reader.h
// Stage one of the definition files: a tree of files with includes and defines
// becomes one text. Stage two, the statement readers, never sees a file.
#pragma once

#include <cstdint>
#include <istream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "layout/records/out_map.h"

namespace tova_fw_builder {

// A fault in a definition, with its line in the flattened text:
// "12: [PARAMETER] MESSAGE", or "12: MESSAGE" without a parameter.
class CfgFileError : public std::runtime_error {
 public:
  CfgFileError(std::uint64_t line, std::optional<std::string_view> parameter,
               std::string_view message);
};

// Flattens the definition file `path` with all that it includes, and yields the
// text as a stream that stands at its start.
//
// A line whose first word begins with "#" is a comment. "define NAME VALUE"
// makes the word NAME of all later lines, in all files, mean VALUE. "include
// NAME" puts the text of another file in its place, found as told in
// definition_lookup.h; a define is written $(NAME) there. All other lines are
// copied with exactly one blank behind each word, and never lose their first
// word to a define. A blank line becomes a line of one blank. White space
// behind the last word of a line doubles that word.
//
// An included file that yields no text leaves the stream of its includer in
// its failed state, and the rest of the includer's text is lost; a caller of
// this function can get a failed stream and then reads nothing from it.
//
// Throws std::runtime_error "Max inclusion" (files nest four deep below the
// top), "Not recognized define : " and the name, "Define name conflict : " and
// the name, "Definition files expand to too much text" (a text of more than
// 1 MiB that is 16 times as long as its files), and what open_image_defs
// throws. Leaves the working directory at the top file's.
std::unique_ptr<std::iostream> read_image_defs(FwOutMap& map,
                                               const std::string& path);

}  // namespace tova_fw_builder
