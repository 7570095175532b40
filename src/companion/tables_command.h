// companion/tables_command.h
#pragma once

#include "companion/ground/status.h"

namespace tova_fw_builder {

class CommandNode;

// Adds `tova_fw tables`: the section tables, symbol lists and the list of ELFs.
// A build without libelf doesn't have it, and the program's help says so.
void add_tables_command(CommandNode program, Status& status);

}  // namespace tova_fw_builder
