// driver/command_table.h
// Every command of the tool: the only place that knows them all.
#pragma once

#include <span>

#include "driver/command_line.h"

namespace tova_fw_builder {

std::span<const Command> command_table();

}  // namespace tova_fw_builder
