// companion/colour_option.h
#pragma once

#include "companion/ground/colour.h"

namespace CLI {
class App;
}

namespace tova_fw_builder {

// Adds --color=auto|always|never, which all commands have that print for
// people.
void add_colour_option(CLI::App& command, ColourWhen& when);

}  // namespace tova_fw_builder
