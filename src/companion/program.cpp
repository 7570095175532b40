#include "companion/program.h"

#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <vector>

#include "companion/attach_command.h"
#include "companion/check_command.h"
#include "companion/command_line/command_line.h"
#include "companion/command_line/wrong_usage.h"
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
#include "driver/ground/log.h"

namespace tova_fw_builder {
namespace {

using AddCommand = void (*)(CommandNode program, Status& status);

// In the order of the help.
constexpr AddCommand kCommands[] = {
    add_show_command,   add_diff_command,       add_check_command,
    add_map_command,    add_tables_command,     add_where_command,
    add_lint_command,   add_key_command,        add_to_sign_command,
    add_attach_command, add_completion_command,
};

Status run(CommandLine& line, const std::vector<std::string>& arguments) {
  try {
    line.run(arguments);
    return Status::kYes;
  } catch (const WrongUsage& error) {
    report_trouble("", error.what());
    std::cerr << "Try '" << line.understood() << " --help'.\n";
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
  CommandLine line("tova_fw",
                   "Looks into firmware images and what belongs to them.",
                   "tova_fw " TOVA_VERSION);
  for (const AddCommand add : kCommands) add(line.program(), status);

  const Status ended = run(line, arguments);
  status = worse_of(status, ended);
  if (!finish_standard_output()) status = Status::kTrouble;
  return static_cast<int>(status);
}

}  // namespace tova_fw_builder
