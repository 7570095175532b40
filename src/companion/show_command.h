// companion/show_command.h
#pragma once

#include "companion/ground/status.h"

namespace CLI {
class App;
}

namespace tova_fw_builder {

// show FILE...: what is in each file.
void add_show_command(CLI::App& program, Status& status);

}  // namespace tova_fw_builder
