// definitions/includes_and_defines.h
// Stage one of the definition files: a tree of files becomes one text. Stage
// two, the statement readers, never sees a file.
#pragma once

#include <cstdint>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>

#include "layout/records/out_map.h"

namespace tova_fw_builder {

// The depth of includes that fails with "Max inclusion". The top file has 0.
inline constexpr std::uint32_t kMaxIncludeDepth = 5;

// What the definition reader tells of its way, for those who want to know where
// the flattened text came from: messages of the builder go by the lines of that
// text alone. This one takes no notes.
class ReadingNotes {
 public:
  virtual ~ReadingNotes() = default;

  // Of each file, by its canonical path, and of its lines; of a view, the words
  // that are told behind it are parts.
  virtual void enter_file(const std::string& /*path*/) {}
  virtual void enter_line(std::string_view /*line*/) {}

  // A line of the flattened text begins, or of what that would hold if it took
  // any more. One word after the other follows, the key first; one that a
  // define replaces stands as it was.
  virtual void add_line(bool /*is_taken*/) {}
  virtual void add_word(std::string_view /*word*/, bool /*is_replaced*/) {}

  virtual void add_define(std::string_view /*name*/,
                          std::string_view /*value*/) {}
  virtual void use_define(std::string_view /*name*/) {}

  enum class Fate {
    kTaken,
    kEmpty,  // no text, so that the includer takes no more
    kLost,   // the includer took no more already: the file's lines don't count
  };
  virtual void leave_file(Fate /*fate*/) {}
};

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
// much text" (what is read and made, each include counting for 160 more, is
// above 1 MiB and 16 times the length of its files together), and what
// open_image_defs throws. Leaves the working directory at the top file's.
std::unique_ptr<std::iostream> read_image_defs(FwOutMap& map,
                                               const std::string& path);
std::unique_ptr<std::iostream> read_image_defs(FwOutMap& map,
                                               const std::string& path,
                                               ReadingNotes& notes);

// Opens the file of that name, or else the one of that name in
// `map.default_dir`. Appends its canonical path to `map.files_read`, pushes the
// working directory on `map.dir_stack` and makes the file's directory the new
// one; the caller undoes the last two behind an included file.
//
// Throws std::runtime_error "Failed to open image defs file : " and the name,
// or "Cannot get current working directory", or "filesystem error: canonical:
// ", the system's reason and the name in brackets, for a name that the new
// directory doesn't resolve.
std::shared_ptr<std::ifstream> open_image_defs(FwOutMap& map,
                                               const std::string& name);

// One attempt of it. Yields a stream that isn't open, with nothing changed, if
// there is no such file; a directory is none, and a device is an empty file.
std::shared_ptr<std::ifstream> find_image_def(FwOutMap& map,
                                              const std::string& name);

}  // namespace tova_fw_builder
