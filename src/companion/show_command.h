// companion/show_command.h
#pragma once

#include "companion/ground/status.h"

namespace tova_fw_builder {

class CommandNode;

// show FILE...: what is in each file.
void add_show_command(CommandNode program, Status& status);

}  // namespace tova_fw_builder
