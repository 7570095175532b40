// companion/where_command.h
#pragma once

#include "companion/ground/status.h"

namespace tova_fw_builder {

class CommandNode;

// Adds `tova_fw where`: what run addresses belong to.
void add_where_command(CommandNode program, Status& status);

}  // namespace tova_fw_builder
