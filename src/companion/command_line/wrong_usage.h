// companion/command_line/wrong_usage.h
#pragma once

#include <string>

namespace CLI {
class App;
class ParseError;
}  // namespace CLI

namespace tova_fw_builder {

// The command line as far as it was understood: "tova_fw" or "tova_fw show".
std::string command_of(const CLI::App& program);

// What is wrong with a command line that the parser has refused. Of a word that
// is no command, or an option that the command hasn't, it names the nearest.
std::string wrong_usage_text(const CLI::App& program,
                             const CLI::ParseError& error);

}  // namespace tova_fw_builder
