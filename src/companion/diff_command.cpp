#include "companion/diff_command.h"

#include <iostream>
#include <memory>
#include <string>

#include "companion/colour_option.h"
#include "companion/command_line/command_node.h"
#include "companion/ground/json.h"
#include "companion/ground/trouble.h"
#include "inspect/compare/compare_files.h"
#include "inspect/compare/report.h"

namespace tova_fw_builder {
namespace {

struct Options {
  std::string old_path;
  std::string new_path;
  bool all = false;
  bool ignore_dates = false;
  bool json = false;
  ColourWhen colour = ColourWhen::kAuto;
};

Comparison compare(const Options& options) {
  try {
    return compare_paths(options.old_path, options.new_path,
                         options.ignore_dates);
  } catch (const std::runtime_error& error) {
    Comparison none;
    none.troubles.push_back(trouble_of(error));
    return none;
  }
}

Status diff(const Options& options) {
  const Comparison comparison = compare(options);
  Troubles troubles;
  for (const Trouble& trouble : comparison.troubles) troubles.add(trouble);
  if (options.json) {
    Json document = comparison_json(comparison);
    document["troubles"] = troubles_json(troubles);
    std::cout << json_text(document);
  } else {
    print_comparison(std::cout, comparison, options.all,
                     colours(wants_colour(options.colour)));
  }
  return troubles.any()          ? Status::kTrouble
         : comparison.is_equal() ? Status::kYes
                                 : Status::kNo;
}

}  // namespace

void add_diff_command(CommandNode program, Status& status) {
  const CommandNode command = program.add_command(
      "diff", "Show what differs between two files or two folders");
  const auto options = std::make_shared<Options>();
  command.add_option("OLD", options->old_path, "The file or folder as it was")
      .required()
      .called("");
  command.add_option("NEW", options->new_path, "The one as it is now")
      .required()
      .called("");
  command.add_flag("--all", options->all,
                   "Show echoes, too: what only follows from other changes");
  command.add_flag("--ignore-dates", options->ignore_dates,
                   "Leave out the dates of the builds, the folders in their "
                   "paths, and what follows from these alone");
  command.add_flag("--json", options->json, "Print one JSON document");
  add_colour_option(command, options->colour);
  command.footer(
      "Nothing is printed for what is equal. Ends with 0 if all is equal, with "
      "1 if not.\n"
      "Example: tova_fw diff released/firmware.bin out/firmware.bin\n"
      "Example: tova_fw diff --ignore-dates released out");
  command.run([options, &status] { status = diff(*options); });
}

}  // namespace tova_fw_builder
