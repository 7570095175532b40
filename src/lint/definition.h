// lint/definition.h
// The definitions as the builder's readers took them, with the places of their
// words. As far as they were read: a refusal ends the reading.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "definitions/block_reader.h"
#include "definitions/statement.h"
#include "layout/build_core.h"
#include "layout/records/out_map.h"
#include "lint/constants.h"
#include "lint/findings.h"
#include "lint/source_map.h"

namespace tova_fw_builder {

struct LintWord {
  std::string_view text;  // behind the defines; in Definition::source
  Spot spot;
  std::uint32_t define = SourceMap::kNone;  // that has made it
};

// A line that a block has taken.
struct LintStatement {
  std::uint32_t block = 0;
  std::vector<LintWord> words;  // the key first
  // White space behind the last word makes that word come twice: it isn't among
  // the words.
  bool has_echo = false;

  std::string_view key() const { return words.front().text; }
  Spot spot() const { return words.front().spot; }
};

struct LintBlock {
  static constexpr std::uint32_t kNone = SourceMap::kNone;

  BlockKind kind = BlockKind::kImage;
  std::uint32_t parent = kNone;
  std::uint32_t opened_by = kNone;  // statement
  std::uint32_t ended_by = kNone;   // index in source.lines
  std::vector<std::uint32_t> statements;
};

struct Definition {
  SourceMap source;
  std::vector<LintStatement> statements;
  std::vector<LintBlock> blocks;  // in order; the image's first

  std::unique_ptr<FwOutMap> map;
  bool has_constants = false;  // a header was given
  ConstantTexts constants;

  // Why the builder refuses it: its own text, without the line number.
  struct Refusal {
    std::string text;
    // An index in source.lines if a statement is refused; else the files could
    // not be joined, and source.open tells where.
    std::uint32_t line = SourceMap::kNone;
  };
  std::optional<Refusal> refusal;
  // The whole text was lost by an include, and nothing was read.
  bool is_lost = false;
};

// Reads header and definitions. A constant that a statement asks for is taken
// as given where no header is. Throws what the builder's readers throw where
// the header or the top file can't be read.
Definition read_definition(const BuildInputs& inputs);

// The words of a line of the flattened text, by its index in source.lines.
LintStatement words_of_line(const SourceMap& source, std::uint32_t line);

// A line of a file, also one that isn't in the flattened text; empty if there
// is no such place.
std::string_view text_of_place(const SourceMap& source, SourceMap::Place place);

// Its words, one after the other: a line may have millions.
class PlaceWords {
 public:
  PlaceWords(const SourceMap& source, SourceMap::Place place);

  // Nothing when none is left.
  std::optional<LintWord> next();

 private:
  SourceMap::Place place_;
  std::string_view text_;
  Statement rest_;
  bool is_first_ = true;
};

// Its first words, at most that many.
std::vector<LintWord> words_of_place(const SourceMap& source,
                                     SourceMap::Place place, std::size_t most);

inline constexpr std::size_t kLastWord = static_cast<std::size_t>(-1);

// Where one of them stands, counted from 0, or else the last one; the line
// alone if it has none.
Spot spot_of_word(const SourceMap& source, SourceMap::Place place,
                  std::size_t word);

}  // namespace tova_fw_builder
