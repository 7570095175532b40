#include "companion/choice.h"

#include <CLI/CLI.hpp>

#include "companion/ground/nearest.h"

namespace tova_fw_builder {

void take_one_of(CLI::Option& option, const std::vector<std::string>& words) {
  const auto refuse = [words](const std::string& word) -> std::string {
    if (std::find(words.begin(), words.end(), word) != words.end()) return "";
    const std::string nearest = nearest_word(word, words);
    return "'" + word + "' is none of " + CLI::detail::join(words, ", ") +
           (nearest.empty() ? "" : "; did you mean '" + nearest + "'?");
  };
  option.check(CLI::Validator(refuse, ""))
      ->type_name(CLI::detail::join(words, "|"));
}

}  // namespace tova_fw_builder
