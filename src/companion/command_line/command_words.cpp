#include "companion/command_line/command_words.h"

#include <CLI/CLI.hpp>

namespace tova_fw_builder {
namespace {

// The words of "auto|always|never", as Option::one_of says them to the parser;
// none of "FILE".
std::vector<std::string> values_of(const std::string& type_name) {
  if (type_name.find('|') == type_name.npos) return {};
  return CLI::detail::split(type_name, '|');
}

void take_options(const CLI::App& app, CommandWords& words) {
  for (const CLI::Option* option : app.get_options()) {
    const auto values = values_of(option->get_type_name());
    if (option->get_positional()) words.values = values;
    for (const std::string& name : option->get_lnames()) {
      words.options.push_back({"--" + name, option->get_description(),
                               option->get_items_expected_max() > 0, values});
    }
  }
}

void collect(const CLI::App& app, const std::string& path,
             std::vector<CommandWords>& commands) {
  CommandWords words;
  words.path = path;
  words.description = app.get_description();
  take_options(app, words);
  for (const CLI::App* command : app.get_subcommands({})) {
    words.commands.push_back(command->get_name());
  }
  commands.push_back(words);
  for (const CLI::App* command : app.get_subcommands({})) {
    collect(*command, (path.empty() ? "" : path + ' ') + command->get_name(),
            commands);
  }
}

}  // namespace

std::vector<CommandWords> command_words(const CommandNode& program) {
  std::vector<CommandWords> commands;
  collect(program.app(), "", commands);
  return commands;
}

}  // namespace tova_fw_builder
