#include "companion/command_line/command_node.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "companion/command_line/wrong_usage.h"

namespace tova_fw_builder {
namespace {

// The parser takes any word that follows for the value: one that was forgotten
// would take an option away, and name a file after it.
void refuse_options_as_value(const CLI::App& app, CLI::Option& option) {
  if (option.get_positional()) return;
  const auto refuse = [&app](const std::string& word) -> std::string {
    if (!word.starts_with('-') || app.get_option_no_throw(word) == nullptr) {
      return "";
    }
    return "a value has to stand behind it, and '" + word + "' is an option";
  };
  option.check(CLI::Validator(refuse, ""));
}

}  // namespace

Option Option::required() const {
  option_->required();
  return *this;
}

Option Option::called(const std::string& value) const {
  option_->type_name(value);
  return *this;
}

Option Option::repeatable() const {
  option_->expected(1)->take_all()->allow_extra_args(false);
  return *this;
}

Option Option::one_of(const std::vector<std::string>& words) const {
  const auto refuse = [words](const std::string& word) -> std::string {
    if (std::find(words.begin(), words.end(), word) != words.end()) return "";
    return wrong_value_text(word, words);
  };
  // The bars tell the words apart for the completions, too.
  option_->check(CLI::Validator(refuse, ""))
      ->type_name(CLI::detail::join(words, "|"));
  return *this;
}

Option Option::with_default() const {
  option_->capture_default_str();
  return *this;
}

Option Option::excludes(const Option& other) const {
  option_->excludes(other.option_);
  return *this;
}

Option Option::needs(const Option& other) const {
  option_->needs(other.option_);
  return *this;
}

CommandNode CommandNode::add_command(const std::string& name,
                                     const std::string& description) const {
  app_->require_subcommand(1);
  return CommandNode(*app_->add_subcommand(name, description));
}

Option CommandNode::add_option(const std::string& names, std::string& value,
                               const std::string& help) const {
  CLI::Option* const option = app_->add_option(names, value, help);
  refuse_options_as_value(*app_, *option);
  return Option(*option);
}

Option CommandNode::add_option(const std::string& names,
                               std::vector<std::string>& values,
                               const std::string& help) const {
  CLI::Option* const option = app_->add_option(names, values, help);
  refuse_options_as_value(*app_, *option);
  return Option(*option);
}

Option CommandNode::add_option(
    const std::string& names,
    const std::function<void(const std::string&)>& take,
    const std::string& help) const {
  CLI::Option* const option =
      app_->add_option_function<std::string>(names, take, help);
  refuse_options_as_value(*app_, *option);
  return Option(*option);
}

Option CommandNode::add_flag(const std::string& names, bool& given,
                             const std::string& help) const {
  // "--release=false" would be no release without a word.
  return Option(*app_->add_flag(names, given, help)->disable_flag_override());
}

void CommandNode::add_choices(const std::string& title,
                              const std::vector<Choice>& choices) const {
  std::vector<const CLI::Option*> options;
  std::string names;
  for (const Choice& choice : choices) {
    options.push_back(
        app_->add_flag_callback(choice.name, choice.choose, choice.help)
            ->disable_flag_override()
            ->group(title));
    names += (names.empty() ? "" : ",") + choice.name;
  }
  // The library's own group of options puts its name for one into the help.
  app_->parse_complete_callback([options, names] {
    const auto given = static_cast<std::size_t>(std::count_if(
        options.begin(), options.end(),
        [](const CLI::Option* option) { return option->count() > 0; }));
    if (given != 1) throw CLI::RequiredError::Option(1, 1, given, names);
  });
}

void CommandNode::footer(const std::string& text) const { app_->footer(text); }

void CommandNode::run(const std::function<void()>& action) const {
  app_->callback(action);
}

}  // namespace tova_fw_builder
