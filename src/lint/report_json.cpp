// What is of a file as a whole stands at its line 1: there is no place without
// a line.
#include "lint/report_json.h"

#include <algorithm>

#include "companion/ground/json_writer.h"
#include "lint/report_text.h"
#include "lint/shown_columns.h"

namespace tova_fw_builder {

namespace {

Json place_json(const LintReport& report, const std::string& folder,
                const Spot& spot, ShownColumns& columns) {
  return {{"file", shown_path(report.sources[spot.file].path, folder)},
          {"line", std::max(spot.line, 1u)},
          {"column", spot.line == 0 ? 1 : columns.of(spot)}};
}

}  // namespace

void print_findings_json(std::ostream& out, const LintReport& report,
                         const std::string& folder) {
  ShownColumns columns(report);
  JsonWriter json(out);
  json.open('{');
  json.value("schema", 1);
  json.open("findings", '[');
  for (const Finding& finding : report.findings) {
    Json one = place_json(report, folder, finding.spot, columns);
    one["level"] = level_name(finding.level);
    one["rule"] = finding.rule;
    one["text"] = finding.text;
    one["notes"] = Json::array();
    for (const Note& note : finding.notes) {
      one["notes"].push_back(place_json(report, folder, note.spot, columns));
      one["notes"].back()["text"] = note.text;
    }
    json.value(one);
  }
  json.close();
  json.close();
}

}  // namespace tova_fw_builder
