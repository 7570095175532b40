#include "companion/choice.h"

#include <CLI/CLI.hpp>

#include "companion/ground/nearest.h"

namespace tova_fw_builder {

void take_one_of(CLI::Option& option, const std::vector<std::string>& words) {
  const auto refuse = [words](const std::string& word) -> std::string {
    if (std::find(words.begin(), words.end(), word) != words.end()) return "";
    Nearest nearest(word);
    for (const std::string& known : words) nearest.offer(known);
    return "'" + word + "' is none of " + CLI::detail::join(words, ", ") +
           nearest.question();
  };
  option.check(CLI::Validator(refuse, ""))
      ->type_name(CLI::detail::join(words, "|"));
}

}  // namespace tova_fw_builder
