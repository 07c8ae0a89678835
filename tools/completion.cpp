// SPDX-License-Identifier: Apache-2.0
// Completion for shells, from the options that are declared.
#include <algorithm>
#include <string>
#include <vector>

#include "arguments.h"
#include "design/base/text.h"

namespace command {
namespace {

struct OptionWords {
  std::string name;
  std::string help;
  std::vector<std::string> values;  // empty: any
  bool takes_value;
  bool is_optional = false;  // the value
};

struct CommandWords {
  std::string name;
  std::string help;
  std::vector<OptionWords> options;
};

// "832|1040|9595" lists its words, "0..100" and "[Q]" none; "..." stands for others.
std::vector<std::string> words_of_type(const std::string& type) {
  if (type.find('|') == std::string::npos) return {};
  std::vector<std::string> words;
  for (size_t from = 0; from <= type.size();) {
    const size_t to = std::min(type.find('|', from), type.size());
    if (const std::string word = type.substr(from, to - from); word != "...") words.push_back(word);
    from = to + 1;
  }
  return words;
}

std::vector<CommandWords> declared_words(const CLI::App& app) {
  std::vector<CommandWords> commands;
  for (const CLI::App* const command : app.get_subcommands(nullptr)) {
    commands.push_back({command->get_name(), command->get_description(), {}});
    for (const CLI::Option* const option : command->get_options()) {
      if (option->get_name() == "SHELL") commands.back().options.push_back({"", "", {"bash", "zsh", "fish"}, true});
      if (option->get_positional()) continue;
      commands.back().options.push_back({option->get_name(), option->get_description(),
                                         words_of_type(option->get_type_name()), option->get_items_expected_max() > 0,
                                         option->get_type_name().starts_with("[")});
    }
  }
  return commands;
}

std::string joined(const std::vector<std::string>& words) {
  std::string line;
  for (const std::string& word : words) line += (line.empty() ? "" : " ") + word;
  return line;
}

// In single quotes, for all three shells.
std::string quoted(const std::string& words) {
  std::string safe = "'";
  for (const char c : words) safe += c == '\'' ? "'\\''" : std::string(1, c);
  return safe + "'";
}

template <class Items>
std::vector<std::string> names_of(const Items& items) {
  std::vector<std::string> names;
  for (const auto& item : items) {
    if (!item.name.empty()) names.push_back(item.name);
  }
  return names;
}

std::string bash(const std::vector<CommandWords>& commands) {
  std::string script =
      "# bash completion for lrasynth\n_lrasynth() {\n  local word=${COMP_WORDS[COMP_CWORD]} "
      "before=${COMP_WORDS[COMP_CWORD-1]}"
      " words=\n  case \"$COMP_CWORD ${COMP_WORDS[1]} $before\" in\n    '1 '*) words='" +
      joined(names_of(commands)) + " --help --version' ;;\n";
  for (const CommandWords& command : commands) {
    for (const OptionWords& option : command.options) {
      if (option.values.empty()) continue;
      const std::string before = option.name.empty() ? command.name : option.name;
      script += "    *' " + command.name + " " + before + "') words='" + joined(option.values) + "' ;;\n";
    }
    script +=
        "    *' " + command.name + " '*) [[ $word == -* ]] && words='" + joined(names_of(command.options)) + "' ;;\n";
  }
  return script +
         "  esac\n  mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$word\")\n"
         "  [[ -n $words ]] || mapfile -t COMPREPLY < <(compgen -f -- \"$word\")\n}\n"
         "complete -o filenames -F _lrasynth lrasynth\n";
}

// In descriptions of _arguments brackets and colons mean something.
std::string plain(std::string words) {
  for (const char c : {'[', ']', ':'}) {
    for (size_t at = 0; (at = words.find(c, at)) != std::string::npos; at += 2) words.insert(at, "\\");
  }
  return words;
}

std::string zsh(const std::vector<CommandWords>& commands) {
  std::string script = "#compdef lrasynth\n_lrasynth() {\n  if (( CURRENT == 2 )); then\n    local -a commands=(\n";
  for (const CommandWords& command : commands) script += "      " + quoted(command.name + ":" + command.help) + "\n";
  script +=
      "    )\n    _describe command commands\n    return\n  fi\n  shift words\n  (( CURRENT-- ))\n  case $words[1] "
      "in\n";
  for (const CommandWords& command : commands) {
    script += "    " + command.name + ")\n      _arguments";
    for (const OptionWords& option : command.options) {
      const std::string values = option.values.empty() ? "_files" : "(" + joined(option.values) + ")";
      const std::string described = option.name + "[" + plain(option.help) + "]";
      const std::string declared =
          option.name.empty() ? "1: :" + values
                              : described + (option.takes_value ? (option.is_optional ? ":: :" : ": :") + values : "");
      script += " \\\n        " + quoted(declared);
    }
    script += " \\\n        '*:file:_files' ;;\n";
  }
  return script + "  esac\n}\n_lrasynth \"$@\"\n";
}

std::string fish(const std::vector<CommandWords>& commands) {
  std::string script = "# fish completion for lrasynth\n";
  for (const CommandWords& command : commands) {
    script +=
        "complete -c lrasynth -f -n __fish_use_subcommand -a " + command.name + " -d " + quoted(command.help) + "\n";
  }
  for (const CommandWords& command : commands) {
    const std::string start = "complete -c lrasynth -n '__fish_seen_subcommand_from " + command.name + "'";
    for (const OptionWords& option : command.options) {
      const std::string long_name =
          option.name.empty() ? "" : " -l " + option.name.substr(2) + " -d " + quoted(option.help);
      const std::string values = option.values.empty() ? "" : " -f -a " + quoted(joined(option.values));
      script += start + long_name + (option.takes_value && !option.is_optional && !option.name.empty() ? " -r" : "") +
                values + "\n";
    }
  }
  return script;
}

}  // namespace

std::string completion_for(const std::string& shell, const CLI::App& app) {
  const std::vector<CommandWords> commands = declared_words(app);
  return shell == "bash" ? bash(commands) : shell == "zsh" ? zsh(commands) : fish(commands);
}

}  // namespace command
