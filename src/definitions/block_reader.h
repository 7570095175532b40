// definitions/block_reader.h
// The blocks that lines make. A block has no end marker: it ends at the first
// statement that it doesn't know, and that line goes back to the enclosing
// block, which judges it anew.
#pragma once

#include <cstdint>
#include <istream>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "definitions/statement.h"

namespace tova_fw_builder {

// A fault in a definition, with its line in the flattened text:
// "12: [PARAMETER] MESSAGE", or "12: MESSAGE" without a parameter.
class CfgFileError : public std::runtime_error {
 public:
  CfgFileError(std::uint64_t line, std::optional<std::string_view> parameter,
               std::string_view message);
};

enum class BlockKind { kImage, kModule, kGroup, kPin };

// One line that was offered to a block.
struct BlockStep {
  bool is_known;  // else it ended the block
  std::uint64_t line;
};

// The lines of the flattened text. One line can be given back, by hold().
class StatementLines {
 public:
  explicit StatementLines(std::istream& stream,
                          std::vector<BlockStep>* noted = nullptr)
      : steps(noted), stream_(stream) {}

  // False when the last line had no line end, or none was left to take.
  bool good() const { return stream_.good(); }

  // Number of the line taken last, from 1. A line given back keeps its number.
  std::uint64_t number() const { return number_; }

  // The line given back, or else the next one of the stream; empty at its end.
  std::string take();

  void hold(std::string line) { held_ = std::move(line); }

  // Steps to be noted; null for none.
  std::vector<BlockStep>* steps = nullptr;

 private:
  std::istream& stream_;
  std::uint64_t number_ = 0;
  std::string held_;  // empty if none is: blank lines are never given back
};

// One row of a block's table: a key, and what to do at it.
template <typename Block>
struct StatementRow {
  std::string_view key;
  void (*carry_out)(Block& block, Statement& statement);
};

// Carries out the statement by its row. False, with nothing done, if it has
// none.
template <typename Block>
bool carry_out(const auto& table, Block& block, Statement& statement) {
  for (const StatementRow<Block>& row : table) {
    if (row.key == statement.word()) {
      row.carry_out(block, statement);
      return true;
    }
  }
  return false;
}

// Offers each line that isn't blank to `accept`, as a Statement, until the
// lines end or `accept` yields false; the line refused is given back.
void read_block(StatementLines& lines, const auto& accept) {
  while (lines.good()) {
    std::string line = lines.take();
    Statement statement(line);
    if (statement.word().empty()) continue;
    // Ahead of the statement, so that the last step is the one that failed.
    if (lines.steps) lines.steps->push_back({true, lines.number()});
    if (accept(statement)) continue;
    if (lines.steps) lines.steps->back().is_known = false;
    return lines.hold(std::move(line));
  }
}

// The keys of a block's table.
std::vector<std::string_view> keys_of(const auto& table) {
  std::vector<std::string_view> keys;
  for (const auto& row : table) keys.push_back(row.key);
  return keys;
}

}  // namespace tova_fw_builder
