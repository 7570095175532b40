// companion/map_command.h
#pragma once

#include "companion/ground/status.h"

namespace tova_fw_builder {

class CommandNode;

// map: where the memory of an image goes, from the inputs of `build`.
void add_map_command(CommandNode program, Status& status);

}  // namespace tova_fw_builder
