// lint/source_map.h
// Where the flattened text came from, as the definition reader tells it.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "definitions/includes_and_defines.h"

namespace tova_fw_builder {

struct SourceMap : ReadingNotes {
  static constexpr std::uint32_t kNone = 0xFFFFFFFF;

  // One that was read, however often it was included.
  struct File {
    std::string path;                // canonical
    std::vector<std::string> lines;  // without their ends, as first read
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
  };
  struct Define {
    std::string name;
    std::string value;
    Place place;
    bool is_used = false;
  };

  std::vector<File> files;
  std::vector<Line> lines;  // those of the flattened text, in order
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

 private:
  std::map<std::string, std::uint32_t> file_numbers_;
  std::map<std::string, std::uint32_t, std::less<>> define_numbers_;
  std::vector<std::size_t> lines_before_;  // each file that is still open
  const char* line_start_ = nullptr;
  bool takes_words_ = false;
};

}  // namespace tova_fw_builder
