// companion/colour_option.h
#pragma once

#include "companion/ground/colour.h"

namespace tova_fw_builder {

class CommandNode;

// Adds --color=auto|always|never, which all commands have that print for
// people.
void add_colour_option(CommandNode command, ColourWhen& when);

}  // namespace tova_fw_builder
