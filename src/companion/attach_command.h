// companion/attach_command.h
#pragma once

#include "companion/ground/status.h"

namespace tova_fw_builder {

class CommandNode;

// Adds `attach`: puts a signature that was made outside into a manifest.
void add_attach_command(CommandNode program, Status& status);

}  // namespace tova_fw_builder
