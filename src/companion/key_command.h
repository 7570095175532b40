// companion/key_command.h
#pragma once

#include "companion/ground/status.h"

namespace tova_fw_builder {

class CommandNode;

// Adds `key` with `show`, `import` and `export`.
void add_key_command(CommandNode program, Status& status);

}  // namespace tova_fw_builder
