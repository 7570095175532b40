// companion/command_line/command_words.h
#pragma once

#include <string>
#include <vector>

#include "companion/command_line/command_node.h"

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

// What can be said to the program and its commands; it comes first, and each
// command ahead of those below it.
std::vector<CommandWords> command_words(const CommandNode& program);

}  // namespace tova_fw_builder
