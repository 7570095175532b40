#include "lint/shown_columns.h"

#include <algorithm>

#include "companion/ground/printable.h"

namespace tova_fw_builder {

namespace {

constexpr std::size_t kStep = 1024;  // bytes

std::vector<std::uint32_t> counts_of(std::string_view line) {
  std::vector<std::uint32_t> counts;
  std::size_t count = 0;
  for (std::size_t at = 0; at <= line.size(); at += kStep) {
    counts.push_back(static_cast<std::uint32_t>(count));
    count += count_characters(line.substr(at, kStep));
  }
  return counts;
}

}  // namespace

std::string_view line_of(const LintReport& report, const Spot& spot) {
  if (spot.file >= report.sources.size()) return {};
  const TextLines& lines = report.sources[spot.file].lines;
  return spot.line == 0 || spot.line > lines.size() ? std::string_view()
                                                    : lines[spot.line - 1];
}

std::uint32_t ShownColumns::of(const Spot& spot) {
  const std::string_view line = line_of(report_, spot);
  const std::size_t column = std::min<std::size_t>(spot.column, line.size());
  std::size_t ahead = 0;
  if (column >= kStep) {
    auto& counts = counts_[{spot.file, spot.line}];
    if (counts.empty()) counts = counts_of(line);
    ahead = counts[column / kStep];
  }
  const std::size_t begin = column / kStep * kStep;
  ahead += count_characters(line.substr(begin, column - begin));
  return static_cast<std::uint32_t>(ahead + 1);
}

}  // namespace tova_fw_builder
