// companion/to_sign_command.h
#pragma once

#include "companion/ground/status.h"

namespace tova_fw_builder {

class CommandNode;

// Adds `to-sign`: what a signer outside has to sign.
void add_to_sign_command(CommandNode program, Status& status);

}  // namespace tova_fw_builder
