// companion/check_command.h
#pragma once

#include "companion/ground/status.h"

namespace CLI {
class App;
}

namespace tova_fw_builder {

// check FILE...: whether the files of one image belong together, are whole, and
// who signed them.
void add_check_command(CLI::App& program, Status& status);

}  // namespace tova_fw_builder
