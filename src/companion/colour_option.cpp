#include "companion/colour_option.h"

#include <CLI/CLI.hpp>
#include <map>
#include <string>

#include "companion/choice.h"

namespace tova_fw_builder {

void add_colour_option(CLI::App& command, ColourWhen& when) {
  const std::map<std::string, ColourWhen> values = {
      {"auto", ColourWhen::kAuto},
      {"always", ColourWhen::kAlways},
      {"never", ColourWhen::kNever}};
  const auto take = [&when, values](const std::string& word) {
    when = values.at(word);
  };
  take_one_of(*command.add_option_function<std::string>(
                  "--color", take, "Colour; auto: on a terminal that wants it"),
              {"auto", "always", "never"});
}

}  // namespace tova_fw_builder
