// companion/attach_command.h
#pragma once

#include "companion/ground/status.h"

namespace CLI {
class App;
}

namespace tova_fw_builder {

// Adds `attach`: puts a signature that was made outside into a manifest.
void add_attach_command(CLI::App& program, Status& status);

}  // namespace tova_fw_builder
