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

// Exit statuses; the shell sees them modulo 256.
inline constexpr int kDone = 0;
inline constexpr int kTooFewParameters = -1;  // with an error line and usage
inline constexpr int kNoArguments = -2;       // with usage
inline constexpr int kNoCommand = -3;  // -v alone, or an unknown command word
                                       // (that one with an error line); usage
inline constexpr int kCommandFailed = -5;  // with an error line: the text of
                                           // the exception as it stands

// Runs the command that `arguments` (without the program's name) ask for: a
// "-v" as the very first word sets the log level to 3; then command word,
// parameters. Yields the exit status; never throws a std::exception. Partly
// written output stays as it is.
int run_command_line(std::span<const std::string> arguments,
                     std::span<const Command> commands);

}  // namespace tova_fw_builder
