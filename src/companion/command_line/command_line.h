// companion/command_line/command_line.h
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "companion/command_line/command_node.h"

namespace tova_fw_builder {

// The command line of the program, with --help and --version.
class CommandLine {
 public:
  // `version` is what --version prints.
  CommandLine(const std::string& program, const std::string& description,
              const std::string& version);
  ~CommandLine();

  // What the commands are added to.
  CommandNode program() const;

  // Reads the words, without the program's name, and runs the command that
  // they name; --help and --version are answered. Throws WrongUsage with what
  // is wrong with them, and what the command throws.
  void run(const std::vector<std::string>& words);

  // The command line as far as it was understood: "tova_fw" or "tova_fw show".
  std::string understood() const;

 private:
  std::unique_ptr<CLI::App> app_;
};

}  // namespace tova_fw_builder
