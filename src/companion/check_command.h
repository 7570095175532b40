// companion/check_command.h
#pragma once

#include "companion/ground/status.h"

namespace tova_fw_builder {

class CommandNode;

// check FILE...: whether the files of one image belong together, are whole, and
// who signed them.
void add_check_command(CommandNode program, Status& status);

}  // namespace tova_fw_builder
