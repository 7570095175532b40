// companion/completion_scripts.h
#pragma once

#include <ostream>
#include <vector>

#include "companion/command_line/command_words.h"

namespace tova_fw_builder {

// Each prints one file for its shell. `commands` begins with the program.
void print_bash_completion(std::ostream& out,
                           const std::vector<CommandWords>& commands);
void print_zsh_completion(std::ostream& out,
                          const std::vector<CommandWords>& commands);
void print_fish_completion(std::ostream& out,
                           const std::vector<CommandWords>& commands);

}  // namespace tova_fw_builder
