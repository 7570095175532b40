// companion/lint_command.h
#pragma once

#include "companion/ground/status.h"

namespace CLI {
class App;
}

namespace tova_fw_builder {

// lint: what the builder will refuse in a definition, and what it will accept
// though it hardly was meant.
void add_lint_command(CLI::App& program, Status& status);

}  // namespace tova_fw_builder
