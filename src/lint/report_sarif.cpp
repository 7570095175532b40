// SARIF has a region or none: what is of a file as a whole has none, where the
// other forms say line 1.
#include "lint/report_sarif.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>

#include "companion/ground/json_writer.h"
#include "lint/report_text.h"
#include "lint/rules.h"
#include "lint/shown_columns.h"

namespace tova_fw_builder {

namespace {

// All but what a path may have as it is, of RFC 3986.
std::string uri_of(std::string_view path) {
  constexpr std::string_view kPlain =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string uri = path.starts_with('/') ? "file://" : "";
  for (const char c : path) {
    if (kPlain.find(c) != kPlain.npos) {
      uri += c;
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    uri += '%';
    uri += kDigits[byte >> 4];
    uri += kDigits[byte & 15];
  }
  return uri;
}

struct Places {
  const LintReport& report;
  const std::string& folder;
  ShownColumns columns;
};

Json location_json(const Spot& spot, Places& places) {
  const std::string path =
      shown_path(places.report.sources[spot.file].path, places.folder);
  Json artifact = {{"uri", uri_of(path)}};
  if (!path.starts_with('/')) artifact["uriBaseId"] = "SRCROOT";
  Json location = {{"artifactLocation", std::move(artifact)}};
  if (spot.line != 0) {
    const std::uint32_t column = places.columns.of(spot);
    Spot end = spot;
    end.column += spot.length;
    location["region"] = {
        {"startLine", spot.line},
        {"startColumn", column},
        {"endColumn", std::max(places.columns.of(end), column)}};
  }
  return {{"physicalLocation", std::move(location)}};
}

Json rules_json() {
  Json all = Json::array();
  for (const Rule& rule : rules()) {
    all.push_back(
        {{"id", rule.id},
         {"shortDescription", {{"text", std::string(rule.description) + '.'}}},
         {"defaultConfiguration", {{"level", level_name(rule.level)}}}});
  }
  return all;
}

Json result_json(const Finding& finding, Places& places) {
  Json result = {
      {"ruleId", finding.rule},
      {"ruleIndex", find_rule(finding.rule) - rules().data()},
      {"level", level_name(finding.level)},
      {"message", {{"text", finding.text}}},
      {"locations", Json::array({location_json(finding.spot, places)})}};
  Json related = Json::array();
  for (const Note& note : finding.notes) {
    related.push_back(location_json(note.spot, places));
    related.back()["message"] = {{"text", note.text}};
  }
  if (!related.empty()) result["relatedLocations"] = std::move(related);
  return result;
}

}  // namespace

void print_findings_sarif(std::ostream& out, const LintReport& report,
                          const std::string& folder,
                          const std::string& version) {
  Places places{report, folder, ShownColumns(report)};
  const Json driver = {
      {"name", "tova_fw lint"}, {"version", version}, {"rules", rules_json()}};
  JsonWriter json(out);
  json.open('{');
  json.value("$schema", "https://json.schemastore.org/sarif-2.1.0.json");
  json.value("version", "2.1.0");
  json.open("runs", '[');
  json.open('{');
  json.value("tool", {{"driver", driver}});
  json.value("columnKind", "unicodeCodePoints");
  json.value("originalUriBaseIds",
             {{"SRCROOT", {{"uri", uri_of(folder + '/')}}}});
  json.open("results", '[');
  for (const Finding& finding : report.findings) {
    json.value(result_json(finding, places));
  }
  for (int open = 0; open < 4; ++open) json.close();
}

}  // namespace tova_fw_builder
