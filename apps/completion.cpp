#include <fmt/format.h>

#include <array>

#include "apps/console.h"
#include "apps/program.h"

namespace tooldb {
namespace {

// A command with its long options, and the group that it belongs to, if any.
struct Entry {
  std::string group;
  const Command* command;
  std::vector<std::string> options;
};

std::vector<std::string> long_options(const Command& command) {
  std::vector<std::string> names;
  const auto app = described(command);
  for (const CLI::Option* option : app->get_options()) {
    for (const auto& name : option->get_lnames()) names.push_back("--" + name);
  }
  names.insert(names.end(), {"--help", "--quiet"});
  return names;
}

std::vector<Entry> all_entries() {
  std::vector<Entry> entries;
  for (const Command* command : commands()) {
    entries.push_back({"", command, long_options(*command)});
    for (const Command* member : command->subcommands) {
      entries.push_back({std::string(command->name), member, long_options(*member)});
    }
  }
  return entries;
}

std::string joined_names(std::span<const Command* const> list) {
  std::string names;
  for (const Command* command : list) names.append(names.empty() ? "" : " ").append(command->name);
  return names;
}

std::string group_names() {
  std::string names;
  for (const Command* command : commands()) {
    if (command->subcommands.empty()) continue;
    names.append(names.empty() ? "" : "|").append(command->name);
  }
  return names;
}

// The case statement that bash and zsh share: what may follow the words typed so far.
std::string choice_cases() {
  std::string text =
      fmt::format("    '') choices='{} --help --version' ;;\n", joined_names(commands()));
  for (const Entry& entry : all_entries()) {
    const std::string key = (entry.group.empty() ? "" : entry.group + ' ');
    const auto members = entry.command->subcommands;
    text += fmt::format("    '{}{}') choices='{}' ;;\n", key, entry.command->name,
                        members.empty() ? fmt::format("{}", fmt::join(entry.options, " "))
                                        : joined_names(members) + " --help");
  }
  return text;
}

constexpr std::string_view kBash =
    R"(# bash completion of tooldb; load it with: source <(tooldb completion bash)
_tooldb() {
  local current=${COMP_WORDS[COMP_CWORD]} key='' choices='' word
  local typed=("${COMP_WORDS[@]:1:COMP_CWORD-1}")
@WALK@  if [[ $current == -* || $key =~ ^(@GROUPS@)?$ ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$choices" -- "$current")
  else
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
  fi
}
complete -o filenames -F _tooldb tooldb
)";

constexpr std::string_view kZsh = R"(#compdef tooldb
# zsh completion of tooldb; save it as _tooldb in a folder of $fpath
_tooldb() {
  local key='' choices='' word
  local -a typed
  typed=("${(@)words[2,CURRENT-1]}")
@WALK@  if [[ $PREFIX == -* || $key =~ '^(@GROUPS@)?$' ]]; then
    compadd -- ${=choices}
  else
    _files
  fi
}
compdef _tooldb tooldb
)";

// Finds the command among the words typed, and what may follow it.
constexpr std::string_view kWalk = R"(  for word in "${typed[@]}"; do
    [[ $word == -* ]] && continue
    case $key in
      '') key=$word ;;
      @GROUPS@) key="$key $word" ;;
      *) break ;;
    esac
  done
  case $key in
@CASES@  esac
)";

void fill_in(std::string& text, std::string_view mark, const std::string& value) {
  for (auto at = text.find(mark); at != std::string::npos; at = text.find(mark, at)) {
    text.replace(at, mark.size(), value);
    at += value.size();
  }
}

std::string bourne_script(std::string_view frame) {
  std::string text(frame);
  fill_in(text, "@WALK@", std::string(kWalk));
  fill_in(text, "@GROUPS@", group_names());
  fill_in(text, "@CASES@", choice_cases());
  return text;
}

std::string bash_script() { return bourne_script(kBash); }
std::string zsh_script() { return bourne_script(kZsh); }

std::string fish_script() {
  std::string text =
      "# fish completion of tooldb; save it as ~/.config/fish/completions/tooldb.fish\n";
  for (const Entry& entry : all_entries()) {
    const std::string seen = "__fish_seen_subcommand_from ";
    const std::string before = entry.group.empty() ? "__fish_use_subcommand" : seen + entry.group;
    text += fmt::format("complete -c tooldb -f -n '{}' -a {} -d '{}'\n", before,
                        entry.command->name, entry.command->help);
    const std::string group = entry.group.empty() ? "" : seen + entry.group + "; and ";
    for (const auto& option : entry.options) {
      text += fmt::format("complete -c tooldb -n '{}{}{}' -l {}\n", group, seen,
                          entry.command->name, option.substr(2));
    }
  }
  return text;
}

struct Shell {
  const char* name;
  std::string (*script)();
};

constexpr std::array<Shell, 3> kShells = {
    {{"bash", bash_script}, {"zsh", zsh_script}, {"fish", fish_script}}};

struct Options {
  std::string shell;
};

void run(const Options& options, Console& console) {
  for (const Shell& shell : kShells) {
    if (options.shell == shell.name) return console.Print(shell.script());
  }
  throw UsageError("'" + options.shell + "' is none of bash, zsh and fish");
}

void add_arguments(CLI::App& app, Options& options) {
  app.add_option("SHELL", options.shell, "bash, zsh or fish")->required();
}

constexpr Example kExamples[] = {
    {"source <(tooldb completion bash)", "Completes commands and options in this bash."},
    {"tooldb completion fish > ~/.config/fish/completions/tooldb.fish", "Installs it for fish."},
};

}  // namespace

extern const Command kCompletion;
const Command kCompletion = {
    "completion",
    "Prints the completion script of a shell",
    "Completes the commands, their options and file names.",
    kExamples,
    declare<Options, add_arguments, run>,
    {},
};

}  // namespace tooldb
