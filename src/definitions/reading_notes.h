// definitions/reading_notes.h
#pragma once

#include <string>
#include <string_view>

namespace tova_fw_builder {

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

}  // namespace tova_fw_builder
