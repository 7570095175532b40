// companion/map_command.h
#pragma once

#include "companion/ground/status.h"

namespace CLI {
class App;
}

namespace tova_fw_builder {

// map: where the memory of an image goes, from the inputs of `build`.
void add_map_command(CLI::App& program, Status& status);

}  // namespace tova_fw_builder
