// companion/key_command.h
#pragma once

#include "companion/ground/status.h"

namespace CLI {
class App;
}

namespace tova_fw_builder {

// Adds `key` with `show`, `import` and `export`.
void add_key_command(CLI::App& program, Status& status);

}  // namespace tova_fw_builder
