// companion/program.h
// The program tova_fw: its commands in one table.
//
// A command is a file of its own with
//   void add_NAME_command(CLI::App& program, Status& status);
// which adds the subcommand with its options, its help, an example in the
// footer, and a callback that does the work and sets `status`. What the
// callback throws is reported as trouble.
#pragma once

#include <string>
#include <vector>

namespace tova_fw_builder {

// Runs the command line, without the program's name, and yields the exit
// status.
int run_program(const std::vector<std::string>& arguments);

}  // namespace tova_fw_builder
