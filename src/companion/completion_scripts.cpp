// bash and zsh get one function with the tables as case statements; it finds
// the command among the words ahead of the cursor. fish has such tables itself.
#include "companion/completion_scripts.h"

#include <functional>
#include <string_view>

namespace tova_fw_builder {
namespace {

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) {
    if (!text.empty()) text += ' ';
    text += word;
  }
  return text;
}

std::string option_names(const CommandWords& command) {
  std::vector<std::string> names;
  for (const OptionWords& option : command.options)
    names.push_back(option.name);
  return joined(names);
}

// In single quotes.
std::string quoted(std::string_view text) {
  std::string result = "'";
  for (const char c : text) {
    if (c == '\'') {
      result += "'\\''";
    } else {
      result += c;
    }
  }
  return result + '\'';
}

// One arm of a case statement: PATTERN) choices=WORDS ;;
void print_arm(std::ostream& out, const std::string& pattern,
               const std::string& words) {
  out << "    " << quoted(pattern) << ") choices=" << quoted(words) << " ;;\n";
}

// What bash and zsh share: finds the command in $line, the words ahead of the
// cursor, and sets `choices` to what may stand at it; empty for files.
void print_tables(std::ostream& out,
                  const std::vector<CommandWords>& commands) {
  out << "  local at= word choices=\n"
      << "  for word in \"${line[@]}\"; do\n"
      << "    case \"$at $word\" in\n";
  for (const CommandWords& command : commands) {
    if (command.path.empty()) continue;
    const std::size_t last = command.path.rfind(' ');
    const std::string above =
        last == command.path.npos ? "" : command.path.substr(0, last);
    const std::string name =
        command.path.substr(last == command.path.npos ? 0 : last + 1);
    std::string words = above;
    words.append(" ").append(name);
    out << "      " << quoted(words) << ") at=" << quoted(command.path)
        << " ;;\n";
  }
  out << "    esac\n"
      << "  done\n"
      << "  case \"$at $previous\" in\n";
  for (const CommandWords& command : commands) {
    for (const OptionWords& option : command.options) {
      if (!option.takes_value) continue;
      out << "    " << quoted(command.path + ' ' + option.name) << ") choices="
          << quoted(option.values.empty() ? "-" : joined(option.values))
          << " ;;\n";
    }
  }
  out << "  esac\n"
      << "  [[ $choices ]] || case \"$at ${current:0:1}\" in\n";
  for (const CommandWords& command : commands) {
    print_arm(out, command.path + " -", option_names(command));
  }
  out << "  esac\n"
      << "  [[ $choices ]] || case \"$at\" in\n";
  for (const CommandWords& command : commands) {
    print_arm(
        out, command.path,
        joined(command.commands.empty() ? command.values : command.commands));
  }
  out << "  esac\n"
      << "  [[ $choices != - ]] || choices=\n";
}

}  // namespace

void print_bash_completion(std::ostream& out,
                           const std::vector<CommandWords>& commands) {
  out << "# bash completion of tova_fw, made by: tova_fw completion bash\n"
      << "_tova_fw() {\n"
      << "  local current=${COMP_WORDS[COMP_CWORD]}\n"
      << "  local previous=${COMP_WORDS[COMP_CWORD - 1]}\n"
      << "  local -a line=(\"${COMP_WORDS[@]:1:COMP_CWORD - 1}\")\n"
      << "  # bash takes --color=always apart at its sign.\n"
      << "  if [[ $current == '=' ]]; then\n"
      << "    current=\n"
      << "  elif [[ $previous == '=' ]]; then\n"
      << "    previous=${COMP_WORDS[COMP_CWORD - 2]}\n"
      << "  fi\n";
  print_tables(out, commands);
  out << "  local IFS=$' \\n'\n"
      << "  if [[ $choices ]]; then\n"
      << "    mapfile -t COMPREPLY < <(compgen -W \"$choices\" -- "
         "\"$current\")\n"
      << "  else\n"
      << "    mapfile -t COMPREPLY < <(compgen -f -- \"$current\")\n"
      << "    compopt -o filenames 2>/dev/null\n"
      << "  fi\n"
      << "}\n"
      << "complete -F _tova_fw tova_fw\n";
}

void print_zsh_completion(std::ostream& out,
                          const std::vector<CommandWords>& commands) {
  out << "#compdef tova_fw\n"
      << "# zsh completion of tova_fw, made by: tova_fw completion zsh\n"
      << "_tova_fw() {\n"
      << "  local current=$PREFIX previous=${words[CURRENT - 1]}\n"
      << "  local -a line=(\"${(@)words[2, CURRENT - 1]}\")\n"
      << "  if [[ $current == --*=* ]]; then\n"
      << "    previous=${current%%=*}\n"
      << "    compset -P '*='\n"
      << "    current=$PREFIX\n"
      << "  fi\n";
  print_tables(out, commands);
  out << "  if [[ $choices ]]; then\n"
      << "    compadd -- ${=choices}\n"
      << "  else\n"
      << "    _files\n"
      << "  fi\n"
      << "}\n"
      << "if [[ ${funcstack[1]} == _tova_fw ]]; then\n"
      << "  _tova_fw \"$@\"\n"
      << "else\n"
      << "  compdef _tova_fw tova_fw\n"
      << "fi\n";
}

void print_fish_completion(std::ostream& out,
                           const std::vector<CommandWords>& commands) {
  out << "# fish completion of tova_fw, made by: tova_fw completion fish\n";
  for (const CommandWords& command : commands) {
    std::string condition = "__fish_use_subcommand";
    if (!command.path.empty()) {
      condition = "__fish_seen_subcommand_from " + command.path;
      for (std::size_t at = condition.find(' ', condition.find(' ') + 1);
           at != condition.npos; at = condition.find(' ', at + 1)) {
        const std::string_view again = "; and __fish_seen_subcommand_from";
        condition.insert(at, again);
        at += again.size();
      }
    }
    const std::string head = "complete -c tova_fw -n " + quoted(condition);
    for (const OptionWords& option : command.options) {
      out << head << " -l " << option.name.substr(2);
      if (option.takes_value) out << " -r";
      if (!option.values.empty()) {
        out << " -f -a " << quoted(joined(option.values));
      }
      out << " -d " << quoted(option.description) << '\n';
    }
    const auto& words =
        command.commands.empty() ? command.values : command.commands;
    if (!words.empty()) {
      out << head << " -f -a " << quoted(joined(words)) << '\n';
    }
  }
}

}  // namespace tova_fw_builder
