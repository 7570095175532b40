#include "lint/linted.h"

#include <filesystem>
#include <map>
#include <sstream>

#include "driver/ground/log.h"
#include "lint/report_text.h"

namespace tova_fw_builder {

namespace {

const std::map<char, std::string> kShown = {
    {'/', "\n"},
    {'~', "\t"},
    {'^', "\r"},
    {';', " "},
    {'@',
     "module d m\nuuid 01234567-89AB-CDEF-0123-456789ABCDEF\ngroup text\n"
     "section ep .t\n"}};

}  // namespace

LintTree::LintTree(const std::string& files) {
  set_log_level(kLogError - 1);
  std::istringstream in(files);
  for (std::string name, text; std::getline(in, name, '=');) {
    std::getline(in, text, '|');
    std::string bytes;
    for (const char c : text) {
      bytes += kShown.contains(c) ? kShown.at(c) : std::string(1, c);
    }
    const std::string path = dir.write(name, bytes);
    auto& top = options.inputs.image_def_path;
    if (top.empty()) top = path;
  }
  options.inputs.default_dir = dir.path();
}

LintReport LintTree::lint() const { return tova_fw_builder::lint(options); }

std::string LintTree::findings() const { return findings_of(lint()); }

std::string LintTree::printed(bool shows_lines) const {
  std::ostringstream out;
  print_findings(out, lint(), dir.path(), shows_lines, {});
  return out.str();
}

std::string findings_of(const LintReport& report) {
  std::string all;
  for (const Finding& finding : report.findings) {
    if (!all.empty()) all += ", ";
    if (finding.spot.file != 0) {
      const std::filesystem::path path(report.sources[finding.spot.file].path);
      all += path.filename().string() + ':';
    }
    all += std::to_string(finding.spot.line) + ':' +
           std::to_string(shown_column(report, finding.spot)) + ' ' +
           std::string(finding.rule);
  }
  return all;
}

}  // namespace tova_fw_builder
