// companion/lint_command.h
#pragma once

#include "companion/ground/status.h"

namespace tova_fw_builder {

class CommandNode;

// lint: what the builder will refuse in a definition, and what it will accept
// though it hardly was meant.
void add_lint_command(CommandNode program, Status& status);

}  // namespace tova_fw_builder
