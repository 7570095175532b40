// companion/where_command.h
#pragma once

#include "companion/ground/status.h"

namespace CLI {
class App;
}

namespace tova_fw_builder {

// Adds `tova_fw where`: what run addresses belong to.
void add_where_command(CLI::App& program, Status& status);

}  // namespace tova_fw_builder
