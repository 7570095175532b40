// companion/completion_scripts.h
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace tova_fw_builder {

struct OptionWords {
  std::string name;  // "--as"
  std::string description;
  bool takes_value = false;
  std::vector<std::string> values;  // what it takes; empty for files
};

// A command, or the program itself.
struct CommandWords {
  std::string path;  // "", "show", "key import"
  std::string description;
  std::vector<OptionWords> options;
  std::vector<std::string> commands;  // below it
  std::vector<std::string> values;    // of its arguments; empty for files
};

// Each prints one file for its shell. `commands` begins with the program.
void print_bash_completion(std::ostream& out,
                           const std::vector<CommandWords>& commands);
void print_zsh_completion(std::ostream& out,
                          const std::vector<CommandWords>& commands);
void print_fish_completion(std::ostream& out,
                           const std::vector<CommandWords>& commands);

}  // namespace tova_fw_builder
