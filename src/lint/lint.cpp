// The run: read, link if there is an ELF list, ask each rule, and take out what
// was silenced.
#include "lint/lint.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <tuple>

#include "companion/ground/input_file.h"
#include "companion/ground/trouble.h"
#include "driver/ground/files.h"
#include "lint/allowances.h"
#include "lint/listed_files.h"
#include "lint/rules.h"
#include "signing/keys/key_list.h"

namespace tova_fw_builder {

namespace {

SourceMap::File read_lines(const std::string& path) {
  SourceMap::File file{path, {}};
  const auto in = open_input(path);
  for (std::string line; std::getline(*in, line);) {
    if (line.ends_with('\r')) line.pop_back();
    file.lines.push_back(line);
  }
  return file;
}

class Run {
 public:
  explicit Run(const LintOptions& options)
      : options_(options),
        definition_(read_definition(options.inputs)),
        allowances_(definition_.source) {}

  LintReport report() {
    LintReport report;
    for (const Rule& rule : rules()) {
      if (rule.find == nullptr || is_disabled(rule)) continue;
      Findings found(rule.id, rule.level);
      rule.find(definition_, found);
      take(std::move(found), report);
    }
    SourceMap::File elf_list;
    // Binding asks for all statements.
    const bool is_whole = !definition_.refusal && !definition_.is_lost;
    if (!options_.inputs.elf_list_path.empty() && is_whole) {
      add_linked(report, elf_list);
    } else if (options_.inputs.elf_list_path.empty()) {
      try_key_list(report);
    }
    report.listed = listed_files(options_.inputs);
    // One line may be read more than once.
    std::ranges::stable_sort(report.findings, {}, [](const Finding& finding) {
      const Spot& spot = finding.spot;
      return std::tuple(spot.file, spot.line, spot.column);
    });
    report.findings.erase(
        std::unique(report.findings.begin(), report.findings.end()),
        report.findings.end());
    report.sources = std::move(definition_.source.files);
    if (elf_list.path.empty()) return report;
    report.sources.push_back(std::move(elf_list));
    // Without its lines: one may be a key that was named by mistake.
    report.sources.push_back({options_.inputs.key_list_path, {}});
    return report;
  }

 private:
  bool is_disabled(const Rule& rule) const {
    return std::ranges::find(options_.disabled, rule.id) !=
           options_.disabled.end();
  }

  void take(Findings found, LintReport& report) const {
    for (Finding& finding : found.all) {
      if (allowances_.allow(finding)) continue;
      report.findings.push_back(std::move(finding));
    }
  }

  void add_linked(LintReport& report, SourceMap::File& elf_list) {
    try {
      const std::string& list = options_.inputs.elf_list_path;
      require_no_pipe(list);
      elf_list = read_lines(list);
      const auto number =
          static_cast<std::uint32_t>(definition_.source.files.size());
      const Linked linked = link(definition_, options_.inputs, number);
      for (const Rule& rule : rules()) {
        if (rule.find_linked == nullptr || is_disabled(rule)) continue;
        if (linked.is_unread && rule.id != kRefused) continue;
        Findings found(rule.id, rule.level);
        rule.find_linked(linked, found);
        take(std::move(found), report);
      }
    } catch (const std::bad_alloc&) {
      throw;
    } catch (const std::exception& error) {
      report.troubles.push_back(trouble_of(error));
    }
  }

  // Without an ELF list no rule asks for it.
  void try_key_list(LintReport& report) const {
    const std::string& list = options_.inputs.key_list_path;
    try {
      if (!list.empty()) KeyList{list};
    } catch (const std::runtime_error& error) {
      report.troubles.push_back({"", without_key_bytes(error.what())});
    }
  }

  const LintOptions& options_;
  Definition definition_;
  const Allowances allowances_;
};

}  // namespace

LintReport lint(const LintOptions& options) { return Run(options).report(); }

}  // namespace tova_fw_builder
