// companion/diff_command.h
#pragma once

#include "companion/ground/status.h"

namespace CLI {
class App;
}

namespace tova_fw_builder {

// diff OLD NEW: what differs between two files or two folders.
void add_diff_command(CLI::App& program, Status& status);

}  // namespace tova_fw_builder
