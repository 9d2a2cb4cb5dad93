#include <fmt/format.h>

#include "apps/display_text.h"
#include "apps/program.h"

namespace tooldb {
namespace {

constexpr int kHelpWidth = 80;
constexpr int kNameWidth = 24;

// One entry of a list of names with what they mean, which is wrapped in its own column.
void append_entry(std::string& out, const std::string& name, std::string_view meaning) {
  std::string text = wrapped(meaning, kHelpWidth, kNameWidth);
  const std::string head = "  " + name;
  if (head.size() + 2 > kNameWidth) {
    out += head + '\n' + text;
  } else {
    text.replace(0, head.size(), head);
    out += text;
  }
}

void append_commands(std::string& out, std::span<const Command* const> list) {
  out += "\nCommands:\n";
  for (const Command* command : list) {
    append_entry(out, std::string(command->name), command->help);
  }
}

std::string spelling(const CLI::Option& option) {
  std::string text = option.get_name(false, true);
  for (auto comma = text.find(','); comma != std::string::npos; comma = text.find(',', comma + 2)) {
    text.insert(comma + 1, " ");
  }
  if (option.get_type_size() == 0) return text;
  return text + ' ' + option.get_type_name();
}

void append_arguments(std::string& out, const CLI::App& app) {
  for (const bool positional : {true, false}) {
    bool first = true;
    for (const CLI::Option* option : app.get_options()) {
      if (option->get_positional() != positional) continue;
      if (first) out += positional ? "\nArguments:\n" : "\nOptions:\n";
      first = false;
      append_entry(out, positional ? option->get_name(true) : spelling(*option),
                   option->get_description());
    }
  }
}

std::string usage(const CLI::App& app, const std::string& path) {
  std::string line = "Usage: tooldb " + path + "[OPTIONS]";
  for (const CLI::Option* option : app.get_options()) {
    if (!option->get_positional()) continue;
    const std::string name = option->get_name(true);
    const std::string many = option->get_items_expected_max() > 1 ? "..." : "";
    line += option->get_required() ? ' ' + name + many : " [" + name + many + "]";
  }
  return line + "\n";
}

void append_examples(std::string& out, std::span<const Example> examples) {
  if (examples.empty()) return;
  out += "\nExamples:\n";
  for (const Example& example : examples) {
    out += fmt::format("  {}\n{}", example.line, wrapped(example.meaning, kHelpWidth, 6));
  }
}

}  // namespace

std::string program_help() {
  std::string out =
      "Usage: tooldb COMMAND [OPTIONS] ...\n\n"
      "Keeps libraries of machining tools: folders with one file per tool.\n";
  append_commands(out, commands());
  out += "\nOptions:\n";
  append_entry(out, "-q, --quiet", "Only results, warnings and errors, no other messages");
  append_entry(out, "-h, --help", "This help, or with a command the help of that command");
  append_entry(out, "--version", "The program's version");
  out +=
      "\nExit code: 0 done, 1 something went wrong, 2 wrong usage.\n"
      "\"tooldb COMMAND --help\" tells more, with examples.\n";
  return out;
}

std::string command_help(const Command& command, const std::string& path) {
  const auto app = described(command);
  std::string out = command.subcommands.empty()
                        ? usage(*app, path)
                        : "Usage: tooldb " + path + "COMMAND [OPTIONS] ...\n";
  out += fmt::format("\n{}.\n", command.help);
  if (!command.details.empty()) out += '\n' + wrapped(command.details, kHelpWidth, 0);
  if (!command.subcommands.empty()) append_commands(out, command.subcommands);
  append_arguments(out, *app);
  append_examples(out, command.examples);
  return out;
}

}  // namespace tooldb
