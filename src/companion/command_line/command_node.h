// companion/command_line/command_node.h
// What a command takes and does. The parser behind it is known to this room
// alone.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace tova_fw_builder {

// An option of a command, or a word that has its place. A handle.
class Option {
 public:
  explicit Option(CLI::Option& option) : option_(&option) {}

  Option required() const;
  // What the help calls its value; "" says nothing of it.
  Option called(const std::string& value) const;
  // May be given more than once, with one value each time.
  Option repeatable() const;
  // Takes these words alone, and names them in the help. Another word is
  // answered with all of them and with the one that is nearest.
  Option one_of(const std::vector<std::string>& words) const;
  // The help tells the value that it has now.
  Option with_default() const;
  Option excludes(const Option& other) const;
  Option needs(const Option& other) const;

 private:
  CLI::Option* option_;
};

// The program, one of its commands, or one below that. A handle. What the
// options fill must live as long as the command line.
class CommandNode {
 public:
  explicit CommandNode(CLI::App& app) : app_(&app) {}

  // One of the commands below must be given.
  CommandNode add_command(const std::string& name,
                          const std::string& description) const;

  // `names` are "-o,--output", or "FILE" for words that have their place.
  Option add_option(const std::string& names, std::string& value,
                    const std::string& help) const;
  Option add_option(const std::string& names, std::vector<std::string>& values,
                    const std::string& help) const;
  Option add_option(const std::string& names,
                    const std::function<void(const std::string&)>& take,
                    const std::string& help) const;
  Option add_flag(const std::string& names, bool& given,
                  const std::string& help) const;

  struct Choice {
    std::string name;
    std::string help;
    std::function<void()> choose;
  };
  // Options of which just one must be given, under a heading in the help. One
  // such group is all that a command can have.
  void add_choices(const std::string& title,
                   const std::vector<Choice>& choices) const;

  // What stands below the options in the help.
  void footer(const std::string& text) const;

  // What the command does. What it throws comes out of CommandLine::run.
  void run(const std::function<void()>& action) const;

  const CLI::App& app() const { return *app_; }

 private:
  CLI::App* app_;
};

}  // namespace tova_fw_builder
