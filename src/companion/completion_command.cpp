#include "companion/completion_command.h"

#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "companion/command_line/command_node.h"
#include "companion/command_line/command_words.h"
#include "companion/completion_scripts.h"

namespace tova_fw_builder {
namespace {

using Print = void (*)(std::ostream&, const std::vector<CommandWords>&);

const std::map<std::string, Print>& shells() {
  static const std::map<std::string, Print> table = {
      {"bash", print_bash_completion},
      {"fish", print_fish_completion},
      {"zsh", print_zsh_completion},
  };
  return table;
}

}  // namespace

void add_completion_command(CommandNode program, Status& status) {
  const CommandNode command = program.add_command(
      "completion", "Print the completion script of a shell");
  const auto shell = std::make_shared<std::string>();
  command.add_option("SHELL", *shell, "The shell")
      .required()
      .one_of({"bash", "fish", "zsh"});
  command.footer("Example: source <(tova_fw completion bash)");
  command.run([program, shell, &status] {
    shells().at (*shell)(std::cout, command_words(program));
    status = Status::kYes;
  });
}

}  // namespace tova_fw_builder
