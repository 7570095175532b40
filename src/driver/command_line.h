// driver/command_line.h
// From the command line to one command and an exit status, and the table of
// the commands.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace tova_fw_builder {

// One row of the command table.
struct Command {
  std::string_view word;       // matched exactly, case and all
  std::size_t min_parameters;  // more are accepted and ignored
  // Converts the parameters, at least min_parameters of them, and runs the
  // command to its end. Every failure is a std::exception.
  void (*run)(std::span<const std::string> parameters);
};

// Every command of the tool.
std::span<const Command> command_table();

// Runs the command that `arguments` (without the program's name) ask for: a
// "-v" as the very first word sets the log level to 3; then command word,
// parameters. Never throws a std::exception. Partly written output stays as it
// is.
//
// Yields the exit status, which the shell sees modulo 256: 0; -1 for too few
// parameters and -3 for an unknown command word, both with an error line and
// the usage; -2 for no argument and -3 for -v alone, with the usage; -5 for a
// command that failed, with an error line: the text of the exception as it
// stands.
int run_command_line(std::span<const std::string> arguments,
                     std::span<const Command> commands);

}  // namespace tova_fw_builder
