// companion/command_line/wrong_usage.h
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace CLI {
class App;
class ParseError;
}  // namespace CLI

namespace tova_fw_builder {

// A command line that can't be run: a word that nobody knows, or options that
// contradict each other or don't suffice.
class WrongUsage : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

// "'x' is none of a, b, c", and the nearest of these words.
std::string wrong_value_text(const std::string& word,
                             const std::vector<std::string>& words);

// What is wrong with a command line that the parser has refused. Of a word that
// is no command, or an option that the command hasn't, it names the nearest.
std::string wrong_usage_text(const CLI::App& program,
                             const CLI::ParseError& error);

}  // namespace tova_fw_builder
