// companion/ground/output_file.h
#pragma once

#include <fstream>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "companion/ground/system_files.h"

namespace tova_fw_builder {

// A file that appears whole or not at all: it is written beside its place and
// renamed by commit(). Without commit() the destructor removes it, and what
// stood in its place stays as it was. A symbolic link is followed. A device or
// a pipe, such as /dev/stdout, is written directly.
//
// From the constructor on, Ctrl-C and the like wait for the destructor, so that
// no part of a file is left beside its place, and let what is still to be
// written fail; not where nothing is written beside. Of several such files, the
// last one made ends first.
//
// A new file gets the rights that the caller's umask leaves, an existing one
// keeps its own. A private file, one with private numbers, has mode 0600 from
// its first byte on.
class OutputFile {
 public:
  enum class Rights { kUsual, kPrivate };

  // Throws std::runtime_error "cannot be written: " and the system's reason; or
  // "private numbers are not shown on a terminal: name a file".
  explicit OutputFile(const std::string& path, Rights rights = Rights::kUsual);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  std::ostream& stream() { return out_; }

  // Puts the file in its place. Throws as the constructor does if anything was
  // lost. To be called once, as the last.
  void commit();

 private:
  struct HeldInterrupts {
    HeldInterrupts() : signals(hold_interrupts()) {}
    ~HeldInterrupts() { release_interrupts(signals); }
    const unsigned signals;
  };

  // Remembers why it failed: with a part of the bytes still in memory, a
  // failure may be seen long after it happened.
  class Buffer : public std::filebuf {
   public:
    unsigned held = 0;  // interrupts, one of which ends the writing

    int error() const { return error_; }

   protected:
    int_type overflow(int_type c) override;
    std::streamsize xsputn(const char* bytes, std::streamsize count) override;
    int sync() override;

   private:
    bool ends_here();
    template <typename T>
    T noted(T result, bool failed);

    int error_ = 0;
  };

  std::optional<HeldInterrupts> held_;  // ends last
  std::string path_;
  std::string beside_;  // empty for what is written directly
  Rights rights_;
  Buffer buffer_;
  std::ostream out_{&buffer_};
};

// Writes the whole file. Throws as OutputFile does.
void write_output_file(const std::string& path, std::string_view bytes,
                       OutputFile::Rights rights = OutputFile::Rights::kUsual);

// The same, but names_standard_output() prints the bytes. Throws
// std::runtime_error, too, for private ones that a terminal would show.
void write_output(const std::string& name, std::string_view bytes,
                  OutputFile::Rights rights = OutputFile::Rights::kUsual);

// To be called ahead of the first output of a command. Throws FileError of
// `output` "is an input of this command: name another output" if it is one of
// the files `inputs`, by whatever name or link; they may be empty, or missing.
void require_no_input(const std::string& output,
                      const std::vector<std::string>& inputs);

// Whether the second of two outputs would be written over the first, however
// they are spelled, and whether or not they are there yet. Empty names are none
// and a device takes both.
bool are_one_file(const std::string& a, const std::string& b);

}  // namespace tova_fw_builder
