// companion/command_line/parser_tree.h
// What stands below a command in the parser. There a group of options is a
// command without a name.
#pragma once

#include <vector>

namespace CLI {
class App;
}

namespace tova_fw_builder {

std::vector<const CLI::App*> commands_below(const CLI::App& command);
std::vector<const CLI::App*> groups_of(const CLI::App& command);

}  // namespace tova_fw_builder
