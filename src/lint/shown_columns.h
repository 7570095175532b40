// lint/shown_columns.h
// Columns as people and editors count them.
#pragma once

#include <cstdint>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

#include "lint/lint.h"

namespace tova_fw_builder {

// The line of a spot; empty if it has none.
std::string_view line_of(const LintReport& report, const Spot& spot);

// Columns of a report, which has to outlive it. A line may have any length and
// a finding at each of its words, so a long one is counted once.
class ShownColumns {
 public:
  explicit ShownColumns(const LintReport& report) : report_(report) {}

  // The column of a byte in a line, counted in characters from 1.
  std::uint32_t of(const Spot& spot);

 private:
  const LintReport& report_;
  // By file and line: the characters ahead of each step of a long line.
  std::map<std::pair<std::uint32_t, std::uint32_t>, std::vector<std::uint32_t>>
      counts_;
};

}  // namespace tova_fw_builder
