// The command `lint`: what a finding costs, and the forms of the answer.
#include "companion/lint_command.h"

#include <exception>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "companion/builder_inputs.h"
#include "companion/colour_option.h"
#include "companion/command_line/command_node.h"
#include "companion/command_line/wrong_usage.h"
#include "companion/ground/output_file.h"
#include "companion/ground/standard_output.h"
#include "companion/ground/trouble.h"
#include "companion/printed_output.h"
#include "driver/ground/paths.h"
#include "lint/lint.h"
#include "lint/report_json.h"
#include "lint/report_sarif.h"
#include "lint/report_text.h"
#include "lint/rules.h"

namespace tova_fw_builder {
namespace {

struct Options {
  BuilderInputNames inputs;
  std::vector<std::string> disabled;
  std::optional<std::string> sarif;
  bool strict = false;
  bool json = false;
  bool list_rules = false;
  ColourWhen colour = ColourWhen::kAuto;
};

Status list_rules() {
  for (const Rule& rule : rules()) {
    std::cout << rule.id << std::string(22 - rule.id.size(), ' ')
              << (rule.level == Level::kError ? "error    " : "warning  ")
              << rule.description << '\n';
  }
  return Status::kYes;
}

Status status_of(const LintReport& report, bool strict) {
  for (const Finding& finding : report.findings) {
    if (strict || finding.level == Level::kError) return Status::kNo;
  }
  return Status::kYes;
}

std::vector<std::string> files_of(const BuildInputs& inputs,
                                  const LintReport& report) {
  std::vector<std::string> files = {inputs.elf_list_path, inputs.key_list_path,
                                    inputs.module_config_path.value_or("")};
  for (const SourceMap::File& source : report.sources) {
    files.push_back(source.path);
  }
  files.insert(files.end(), report.listed.begin(), report.listed.end());
  return files;
}

// Of one without a file, the builder's text tells which.
void report_input_trouble(const Trouble& trouble,
                          const BuilderInputNames& names,
                          const BuildInputs& inputs) {
  Trouble told = trouble;
  if (told.file.empty()) {
    told = trouble_of_input(trouble.text, names, inputs)
               .value_or(Trouble{names.definition, trouble.text});
  }
  const bool is_list = told.file == inputs.elf_list_path;
  report_trouble(is_list ? names.elf_list : told.file, told.text);
}

bool prints_sarif(const Options& options) {
  return options.sarif && names_standard_output(*options.sarif);
}

void print_report(const Options& options, const LintReport& report,
                  const std::string& folder) {
  if (options.json) {
    print_findings_json(std::cout, report, folder);
  } else if (!prints_sarif(options)) {
    const bool for_people = wants_colour(options.colour);
    print_findings(std::cout, report, folder, for_people, colours(for_people));
  }
}

Status lint_definition(const Options& options) {
  if (options.list_rules) return list_rules();
  if (options.inputs.definition.empty()) {
    throw WrongUsage("DEFINITION is required");
  }
  if (options.json && prints_sarif(options)) {
    throw WrongUsage("--json and --sarif can't both be printed");
  }
  for (const std::string& name : options.disabled) check_rule_name(name);
  const std::string folder = current_directory();
  const std::string sarif_path =
      prints_sarif(options) ? *options.sarif
                            : absolute_path(options.sarif.value_or(""));
  const BuildInputs inputs = builder_inputs(options.inputs);
  LintReport report;
  try {
    report = lint({inputs, options.disabled});
  } catch (const std::exception& error) {
    report_input_trouble(trouble_of(error), options.inputs, inputs);
    return Status::kTrouble;
  }
  require_no_input(sarif_path, files_of(inputs, report));
  Status status = status_of(report, options.strict);
  if (options.sarif) {
    try {
      print_output(sarif_path, [&](std::ostream& out) {
        print_findings_sarif(out, report, folder, TOVA_VERSION);
      });
    } catch (const std::exception& error) {
      report_trouble(*options.sarif, error.what());
      status = Status::kTrouble;
    }
  }
  print_report(options, report, folder);
  for (const Trouble& trouble : report.troubles) {
    report_input_trouble(trouble, options.inputs, inputs);
    status = Status::kTrouble;
  }
  return status;
}

void add_inputs(CommandNode command, BuilderInputNames& names) {
  command.add_option("DEFINITION", names.definition, "The image definition")
      .called("");
  command
      .add_option("--header", names.header,
                  "The header of constants; without it each one is taken as "
                  "given")
      .called("FILE");
  command
      .add_option("--elf-list", names.elf_list,
                  "The list of ELFs, for the rules about sections, addresses "
                  "and symbols")
      .called("FILE");
  command
      .add_option("--key-list", names.key_list,
                  "The list of trusted keys; without it their store is taken "
                  "as given")
      .called("FILE");
  command
      .add_option("--default-dir", names.default_dir,
                  "Where definitions are searched second; else here")
      .called("DIR");
}

}  // namespace

void add_lint_command(CommandNode program, Status& status) {
  const CommandNode command =
      program.add_command("lint", "Find what is wrong in an image definition");
  const auto options = std::make_shared<Options>();
  add_inputs(command, options->inputs);
  command
      .add_option("--disable", options->disabled,
                  "Leave out a rule; may be given more than once")
      .called("RULE")
      .repeatable();
  command.add_flag("--strict", options->strict,
                   "End with status 1 on a warning, too");
  command.add_flag("--json", options->json, "Print one JSON document");
  command
      .add_option(
          "--sarif",
          [&sarif = options->sarif](const std::string& path) { sarif = path; },
          "Write the findings as SARIF 2.1.0, too; - prints them in place of "
          "the text")
      .called("FILE");
  command.add_flag("--list-rules", options->list_rules,
                   "Print the rules with their levels and end");
  add_colour_option(command, options->colour);
  command.footer(
      "Example: tova_fw lint firmware.def\n"
      "Example: tova_fw lint firmware.def --header config.h \\\n"
      "           --elf-list firmware.elfs --strict --sarif lint.sarif\n"
      "A line '# lint: allow RULE' above a statement silences the rule there.");
  command.run([options, &status] { status = lint_definition(*options); });
}

}  // namespace tova_fw_builder
