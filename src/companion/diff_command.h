// companion/diff_command.h
#pragma once

#include "companion/ground/status.h"

namespace tova_fw_builder {

class CommandNode;

// diff OLD NEW: what differs between two files or two folders.
void add_diff_command(CommandNode program, Status& status);

}  // namespace tova_fw_builder
