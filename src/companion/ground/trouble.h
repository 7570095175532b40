// companion/ground/trouble.h
// What a command couldn't do: told on the standard error, and in the JSON
// document of the commands that print one.
#pragma once

#include <exception>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tova_fw_builder {

struct Trouble {
  std::string file;  // as it was named; empty if it isn't with a file
  std::string text;
};

// A trouble with a file, on its way to the command. what() has the file's name
// ahead of the text.
class FileError : public std::runtime_error {
 public:
  explicit FileError(Trouble trouble);
  const Trouble& trouble() const { return trouble_; }

 private:
  Trouble trouble_;
};

// Of any exception: with a FileError's file, else without one.
Trouble trouble_of(const std::exception& error);

// Prints "tova_fw: FILE: TEXT" and a newline on the standard error, behind all
// that was written to the standard output before; "tova_fw: TEXT" if `file` is
// empty. Both are made printable: a file's name or content can't steer the
// terminal.
void report_trouble(std::string_view file, std::string_view text);

// The troubles of one run.
class Troubles {
 public:
  // Reports it and keeps it.
  void add(Trouble trouble);
  // With a file of the command line, which may have an empty name.
  void add(const std::string& file, const std::string& text);

  bool any() const { return !list_.empty(); }
  const std::vector<Trouble>& list() const { return list_; }

 private:
  std::vector<Trouble> list_;
};

// A message of the builder's without what it quotes of a key file or a key
// list: the first bytes of a file that was named by mistake, and that may be
// all of somebody's private key.
std::string without_key_bytes(std::string_view message);

}  // namespace tova_fw_builder
