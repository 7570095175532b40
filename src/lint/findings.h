// lint/findings.h
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tova_fw_builder {

enum class Level { kWarning, kError };

// "warning" or "error".
std::string_view level_name(Level level);

// A word, or some of a line, in one of the files that were read.
struct Spot {
  std::uint32_t file = 0;    // index in the lint's sources
  std::uint32_t line = 0;    // from 1; 0 for the file as a whole
  std::uint32_t column = 0;  // bytes ahead of it
  std::uint32_t length = 0;  // bytes

  auto operator<=>(const Spot&) const = default;
};

struct Note {
  Spot spot;
  std::string text;

  bool operator==(const Note&) const = default;
};

struct Finding {
  Spot spot;
  std::string_view rule;
  Level level = Level::kWarning;
  std::string text;
  std::vector<Note> notes;

  bool operator==(const Finding&) const = default;
};

// What one rule has to say. Each finding gets the rule's name and level, unless
// the level is named.
class Findings {
 public:
  Findings(std::string_view rule, Level level) : rule_(rule), level_(level) {}

  Finding& add(Spot spot, std::string text) {
    return all.emplace_back(Finding{spot, rule_, level_, std::move(text), {}});
  }

  std::vector<Finding> all;

 private:
  std::string_view rule_;
  Level level_;
};

// A word in single quotes, cut if it is very long.
std::string in_quotes(std::string_view word);

}  // namespace tova_fw_builder
