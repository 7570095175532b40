// Where a command is missing the parser says so, even if a word stands there:
// what it made nothing of is looked at first.
#include "companion/command_line/wrong_usage.h"

#include <CLI/CLI.hpp>
#include <vector>

#include "companion/ground/nearest.h"

namespace tova_fw_builder {
namespace {

std::string full_name(const CLI::App& command) {
  return command.get_parent() == nullptr
             ? command.get_name()
             : full_name(*command.get_parent()) + ' ' + command.get_name();
}

std::vector<std::string> names_below(const CLI::App& command) {
  std::vector<std::string> names;
  for (const CLI::App* below : command.get_subcommands({})) {
    names.push_back(below->get_name());
  }
  return names;
}

void add_options(const CLI::App& command, std::vector<std::string>& names) {
  for (const CLI::Option* option : command.get_options()) {
    for (const std::string& name : option->get_lnames()) {
      names.push_back("--" + name);
    }
  }
}

std::string unknown_text(const std::string& word, const char* what,
                         const CLI::App& command,
                         const std::vector<std::string>& known) {
  Nearest nearest(word);
  for (const std::string& name : known) nearest.offer(name);
  return "'" + word + "' is no " + what + " of " + full_name(command) +
         nearest.question();
}

// What is an option of another command has its place in this one.
std::string text_of_positional(const std::string& word,
                               const CLI::App& command) {
  for (const CLI::Option* option : command.get_options()) {
    const std::string name = option->get_name(true);
    if (option->get_positional() &&
        "--" + CLI::detail::to_lower(name) == word) {
      return ": " + name + " stands without it";
    }
  }
  return "";
}

// Of the first word that the command, or one chosen below it, made nothing of.
std::string text_of_unknown(const CLI::App& command) {
  const auto unknown = command.remaining();
  if (unknown.empty()) {
    const auto chosen = command.get_subcommands();
    return chosen.empty() ? "" : text_of_unknown(*chosen.back());
  }
  const std::string word = unknown[0].substr(0, unknown[0].find('='));
  if (word.starts_with('-')) {
    std::vector<std::string> options;
    add_options(command, options);
    return unknown_text(word, "option", command, options) +
           text_of_positional(word, command);
  }
  const auto commands = names_below(command);
  return commands.empty() ? ""
                          : unknown_text(word, "command", command, commands);
}

}  // namespace

std::string wrong_usage_text(const CLI::App& program,
                             const CLI::ParseError& error) {
  const std::string unknown = text_of_unknown(program);
  return unknown.empty() ? error.what() : unknown;
}

std::string wrong_value_text(const std::string& word,
                             const std::vector<std::string>& words) {
  Nearest nearest(word);
  for (const std::string& known : words) nearest.offer(known);
  return "'" + word + "' is none of " + CLI::detail::join(words, ", ") +
         nearest.question();
}

}  // namespace tova_fw_builder
