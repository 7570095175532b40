#include "companion/colour_option.h"

#include <map>
#include <string>

#include "companion/command_line/command_node.h"

namespace tova_fw_builder {

void add_colour_option(CommandNode command, ColourWhen& when) {
  const std::map<std::string, ColourWhen> values = {
      {"auto", ColourWhen::kAuto},
      {"always", ColourWhen::kAlways},
      {"never", ColourWhen::kNever}};
  const auto take = [&when, values](const std::string& word) {
    when = values.at(word);
  };
  command
      .add_option("--color", take, "Colour; auto: on a terminal that wants it")
      .one_of({"auto", "always", "never"});
}

}  // namespace tova_fw_builder
