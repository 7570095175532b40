// lint/source_map.h
// Where the flattened text came from, as the definition reader tells it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "definitions/includes_and_defines.h"

namespace tova_fw_builder {

// The lines of a file, without their ends. A file may hold nothing but line
// feeds, so a line costs its bytes and one number. A view of one lasts until
// the next is added.
class TextLines {
 public:
  std::size_t size() const { return ends_.size(); }
  bool empty() const { return ends_.empty(); }
  std::string_view operator[](std::size_t number) const;
  void push_back(std::string_view line);

 private:
  std::string text_;
  std::deque<std::size_t> ends_;  // of each line in the text
};

struct SourceMap : ReadingNotes {
  static constexpr std::uint32_t kNone = 0xFFFFFFFF;

  // One that was read, however often it was included.
  struct File {
    std::string path;  // canonical
    TextLines lines;   // as first read
  };
  struct Place {
    std::uint32_t file = kNone;
    std::uint32_t line = 0;  // from 1
  };
  struct Word {
    std::uint32_t column = 0;      // bytes ahead of it in its line
    std::uint32_t length = 0;      // there
    std::uint32_t define = kNone;  // that has replaced it
  };
  struct Line {
    Place place;
    std::uint32_t first_word = 0;  // the key; the next line's ends the words
    std::uint32_t number = 0;      // in the flattened text, from 1
  };
  struct Define {
    std::string name;
    std::string value;
    Place place;
    bool is_used = false;
  };

  std::vector<File> files;
  std::vector<Line> lines;  // of the flattened text, but the blank ones
  std::vector<Word> words;
  std::vector<Define> defines;
  // Those that lost the rest of their file, since they gave no text.
  std::vector<Place> empty_includes;
  // The line at which each file stands that is still open: where a failure
  // happened, the innermost last.
  std::vector<Place> open;

  void enter_file(const std::string& path) override;
  void enter_line(std::string_view line) override;
  void add_line(bool is_taken) override;
  void add_word(std::string_view word, bool is_replaced) override;
  void add_define(std::string_view name, std::string_view value) override;
  void use_define(std::string_view name) override;
  void leave_file(Fate fate) override;

  // The line of the flattened text that has a number, as an index of `lines`;
  // of a blank line, the one behind it.
  std::uint32_t line_at(std::uint64_t number) const;

 private:
  // How far the flattened text was when a file was entered.
  struct Start {
    std::size_t line;  // in lines
    std::uint32_t number;
  };

  std::map<std::string, std::uint32_t> file_numbers_;
  std::map<std::string, std::uint32_t, std::less<>> define_numbers_;
  std::vector<Start> starts_;  // of each file that is still open
  const char* line_start_ = nullptr;
  std::uint32_t last_number_ = 0;  // of the lines of the flattened text
  bool takes_words_ = false;
  bool awaits_key_ = false;
};

}  // namespace tova_fw_builder
