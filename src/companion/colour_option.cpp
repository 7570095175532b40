#include "companion/colour_option.h"

#include <CLI/CLI.hpp>
#include <map>
#include <string>

namespace tova_fw_builder {

void add_colour_option(CLI::App& command, ColourWhen& when) {
  const std::map<std::string, ColourWhen> values = {
      {"auto", ColourWhen::kAuto},
      {"always", ColourWhen::kAlways},
      {"never", ColourWhen::kNever}};
  command
      .add_option("--color", when, "Colour; auto: on a terminal that wants it")
      ->transform(CLI::CheckedTransformer(values).description(""))
      ->type_name("auto|always|never");
}

}  // namespace tova_fw_builder
