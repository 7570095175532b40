// companion/to_sign_command.h
#pragma once

#include "companion/ground/status.h"

namespace CLI {
class App;
}

namespace tova_fw_builder {

// Adds `to-sign`: what a signer outside has to sign.
void add_to_sign_command(CLI::App& program, Status& status);

}  // namespace tova_fw_builder
