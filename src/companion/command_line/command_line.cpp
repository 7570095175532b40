#include "companion/command_line/command_line.h"

#include <CLI/CLI.hpp>

#include "companion/command_line/wrong_usage.h"

namespace tova_fw_builder {
namespace {

std::string chosen_words(const CLI::App& command) {
  const auto chosen = command.get_subcommands();
  return chosen.empty()
             ? command.get_name()
             : command.get_name() + " " + chosen_words(*chosen.back());
}

}  // namespace

CommandLine::CommandLine(const std::string& program,
                         const std::string& description,
                         const std::string& version)
    : app_(std::make_unique<CLI::App>(description, program)) {
  app_->set_help_flag("-h,--help", "Print this help and end");
  app_->set_version_flag("--version", version, "Print the version and end");
  // A word with a slash ahead is a path on every system.
  app_->allow_windows_style_options(false);
}

CommandLine::~CommandLine() = default;

CommandNode CommandLine::program() const { return CommandNode(*app_); }

void CommandLine::run(const std::vector<std::string>& words) {
  try {
    // The library takes them from the end.
    app_->parse(std::vector(words.rbegin(), words.rend()));
  } catch (const CLI::Success& answer) {  // --help, --version
    app_->exit(answer);
  } catch (const CLI::ParseError& error) {
    throw WrongUsage(wrong_usage_text(*app_, error));
  }
}

std::string CommandLine::understood() const { return chosen_words(*app_); }

}  // namespace tova_fw_builder
