#include "companion/command_line/parser_tree.h"

#include <CLI/CLI.hpp>

namespace tova_fw_builder {
namespace {

std::vector<const CLI::App*> below(const CLI::App& command, bool is_named) {
  return command.get_subcommands([is_named](const CLI::App* app) {
    return app->get_name().empty() != is_named;
  });
}

}  // namespace

std::vector<const CLI::App*> commands_below(const CLI::App& command) {
  return below(command, true);
}

std::vector<const CLI::App*> groups_of(const CLI::App& command) {
  return below(command, false);
}

}  // namespace tova_fw_builder
