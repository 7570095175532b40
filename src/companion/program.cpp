#include "companion/program.h"

#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <new>
#include <string>

#include "companion/attach_command.h"
#include "companion/check_command.h"
#include "companion/completion_command.h"
#include "companion/diff_command.h"
#include "companion/ground/standard_output.h"
#include "companion/ground/status.h"
#include "companion/ground/system_files.h"
#include "companion/ground/trouble.h"
#include "companion/key_command.h"
#include "companion/lint_command.h"
#include "companion/map_command.h"
#include "companion/show_command.h"
#include "companion/tables_command.h"
#include "companion/to_sign_command.h"
#include "companion/where_command.h"
#include "companion/wrong_usage.h"
#include "driver/ground/log.h"

namespace tova_fw_builder {
namespace {

using AddCommand = void (*)(CLI::App& program, Status& status);

// In the order of the help.
constexpr AddCommand kCommands[] = {
    add_show_command,   add_diff_command,       add_check_command,
    add_map_command,    add_tables_command,     add_where_command,
    add_lint_command,   add_key_command,        add_to_sign_command,
    add_attach_command, add_completion_command,
};

Status run(CLI::App& program, const std::vector<std::string>& arguments,
           const Status& status) {
  try {
    // The library takes them from the end.
    program.parse(std::vector(arguments.rbegin(), arguments.rend()));
    return status;
  } catch (const CLI::Success& answer) {  // --help, --version
    program.exit(answer);
    return Status::kYes;
  } catch (const CLI::ParseError& error) {
    report_trouble("", wrong_usage_text(program, error));
    std::cerr << "Try '" << command_of(program) << " --help'.\n";
  } catch (const std::bad_alloc&) {
    report_trouble("", "there is not enough memory");
  } catch (const std::exception& error) {
    report_trouble("", error.what());
  }
  return Status::kTrouble;
}

}  // namespace

int run_program(const std::vector<std::string>& arguments) {
  std::ios_base::sync_with_stdio(false);
  take_size_limit_as_error();
  set_log_level(kLogError - 1);  // the builder's code has nothing to say here

  Status status = Status::kYes;
  CLI::App program("Looks into firmware images and what belongs to them.",
                   "tova_fw");
  program.set_help_flag("-h,--help", "Print this help and end");
  program.set_version_flag("--version", "tova_fw " TOVA_VERSION,
                           "Print the version and end");
  program.require_subcommand(1);
  // A word with a slash ahead is a path on every system.
  program.allow_windows_style_options(false);
  for (const AddCommand add : kCommands) add(program, status);

  status = worse_of(status, run(program, arguments, status));
  if (!finish_standard_output()) status = Status::kTrouble;
  return static_cast<int>(status);
}

}  // namespace tova_fw_builder
