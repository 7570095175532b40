// companion/completion_command.h
#pragma once

#include "companion/ground/status.h"

namespace tova_fw_builder {

class CommandNode;

// completion SHELL: prints what the shell needs to complete command lines of
// the program, out of the commands and options that it has.
void add_completion_command(CommandNode program, Status& status);

}  // namespace tova_fw_builder
