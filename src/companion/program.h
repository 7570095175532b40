// companion/program.h
// The program tova_fw: its commands in one table.
//
// A command is a file of its own with
//   void add_NAME_command(CommandNode program, Status& status);
// which adds the command with its options, its help, an example in the footer,
// and what it runs, which sets `status`. What that throws is reported as
// trouble.
#pragma once

#include <string>
#include <vector>

namespace tova_fw_builder {

// Runs the command line, without the program's name, and yields the exit
// status.
int run_program(const std::vector<std::string>& arguments);

}  // namespace tova_fw_builder
