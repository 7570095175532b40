// What is of a file as a whole stands at its line 1: there is no place without
// a line.
#include "lint/report_json.h"

#include <algorithm>

#include "lint/report_text.h"

namespace tova_fw_builder {

namespace {

Json place_json(const LintReport& report, const std::string& folder,
                const Spot& spot) {
  return {{"file", shown_path(report.sources[spot.file].path, folder)},
          {"line", std::max(spot.line, 1u)},
          {"column", spot.line == 0 ? 1 : shown_column(report, spot)}};
}

}  // namespace

Json findings_json(const LintReport& report, const std::string& folder) {
  Json findings = Json::array();
  for (const Finding& finding : report.findings) {
    Json one = place_json(report, folder, finding.spot);
    one["level"] = level_name(finding.level);
    one["rule"] = finding.rule;
    one["text"] = finding.text;
    one["notes"] = Json::array();
    for (const Note& note : finding.notes) {
      one["notes"].push_back(place_json(report, folder, note.spot));
      one["notes"].back()["text"] = note.text;
    }
    findings.push_back(std::move(one));
  }
  return {{"schema", 1}, {"findings", std::move(findings)}};
}

}  // namespace tova_fw_builder
