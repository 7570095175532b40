// A file's bytes are printed as far as a terminal can't be steered by them.
#include "lint/report_text.h"

#include <algorithm>

#include "companion/ground/printable.h"
#include "driver/ground/paths.h"
#include "lint/shown_columns.h"

namespace tova_fw_builder {

namespace {

// A line of a file, with a mark for what isn't printable but the tab: unlike
// printable(), it leaves each character in its column, where the caret points.
std::string in_its_columns(std::string_view line) {
  std::string safe;
  while (!line.empty()) {
    const std::size_t length = length_of_characters(line, 1);
    const bool is_shown = line[0] == '\t' || printable_length(line) == length;
    safe += is_shown ? line.substr(0, length) : "?";
    line.remove_prefix(length);
  }
  return safe;
}

void print_line(std::ostream& out, const LintReport& report, const Spot& spot,
                const Colours& colours) {
  constexpr std::size_t kLongestLine = 200;
  std::string_view line = line_of(report, spot);
  if (line.empty() || line.size() > kLongestLine) return;
  std::string caret;
  for (const char c : line.substr(0, spot.column)) {
    // A tab moves both by as much.
    if (!is_continuation(c)) caret += c == '\t' ? '\t' : ' ';
  }
  const std::size_t length = count_characters(line.substr(
      std::min<std::size_t>(spot.column, line.size()), spot.length));
  out << "    " << in_its_columns(line) << "\n    " << colours.good << caret
      << '^' << std::string(length > 1 ? length - 1 : 0, '~') << colours.plain
      << '\n';
}

}  // namespace

std::string shown_path(const std::string& path, const std::string& folder) {
  const auto near = native_path(path).lexically_relative(native_path(folder));
  return near.empty() || *near.begin() == ".." ? path : path_text(near);
}

void print_findings(std::ostream& out, const LintReport& report,
                    const std::string& folder, bool shows_lines,
                    const Colours& colours) {
  ShownColumns columns(report);
  const auto place = [&](const Spot& spot) {
    std::string text =
        printable(shown_path(report.sources[spot.file].path, folder));
    if (spot.line == 0) return text + ":1:1: ";
    return text + ':' + std::to_string(spot.line) + ':' +
           std::to_string(columns.of(spot)) + ": ";
  };
  for (const Finding& finding : report.findings) {
    const bool is_error = finding.level == Level::kError;
    out << colours.bold << place(finding.spot) << colours.plain
        << (is_error ? colours.bad : colours.bold) << level_name(finding.level)
        << colours.plain << ": " << printable(finding.text) << " ["
        << finding.rule << "]\n";
    if (shows_lines) print_line(out, report, finding.spot, colours);
    for (const Note& note : finding.notes) {
      out << colours.bold << place(note.spot) << colours.plain
          << "note: " << printable(note.text) << '\n';
      if (shows_lines) print_line(out, report, note.spot, colours);
    }
  }
}

}  // namespace tova_fw_builder
