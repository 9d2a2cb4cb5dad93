#include "apps/program.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>

#include "apps/console.h"
#include "apps/display_text.h"
#include "tooldb/version.h"

namespace tooldb {
namespace {

// A command, the words that called it, and the arguments after them.
struct Call {
  const Command* command = nullptr;
  std::string path;  ///< with a blank at the end
  std::vector<std::string> arguments;
  bool help = false;
  bool version = false;
  bool quiet = false;
};

const Command& find_command(std::span<const Command* const> list, const std::string& name) {
  const auto found = std::ranges::find(list, std::string_view(name), &Command::name);
  if (found != list.end()) return **found;
  std::vector<std::string_view> names;
  for (const Command* command : list) names.push_back(command->name);
  const auto meant = nearest(name, names);
  throw UsageError(
      "there is no command '" + name + "'" +
      (meant.empty() ? std::string() : "; did you mean '" + std::string(meant) + "'?"));
}

// Takes the options that every command has; true when `word` was one.
bool take_common_option(Call& call, const std::string& word) {
  const auto is = [&](const char* brief, const char* full) {
    return word == brief || word == full;
  };
  if (is("-q", "--quiet")) return call.quiet = true;
  if (is("-h", "--help")) return call.help = true;
  return false;
}

void read_call(const std::vector<std::string>& words, Call& call) {
  auto list = commands();
  bool only_arguments = false;
  for (const auto& word : words) {
    only_arguments = only_arguments || word == "--";
    if (!only_arguments && take_common_option(call, word)) continue;
    if (list.empty()) {
      call.arguments.push_back(word);
    } else if (call.command == nullptr && word == "--version") {
      call.version = true;
    } else if (word.starts_with('-')) {
      throw UsageError("'" + word + "' stands before a command or is no option of the program");
    } else {
      call.command = &find_command(list, word);
      call.path += word + ' ';
      list = call.command->subcommands;
    }
  }
}

// What the parser could not place: an option's name that is spelt wrongly, or one word too many.
std::string unexpected(CLI::App& app) {
  auto words = app.remaining();
  const auto arguments = std::ranges::find(words, "--");  // what follows is no option
  const auto option =
      std::find_if(words.begin(), arguments, [](const auto& w) { return w.starts_with("-"); });
  if (option == arguments) {
    std::erase(words, "--");
    return "'" + words.front() + "' is one argument too many";
  }
  std::vector<std::string> names;
  for (const CLI::Option* known : app.get_options()) {
    for (const auto& name : known->get_lnames()) names.push_back("--" + name);
  }
  const std::string meant(nearest(*option, names));
  return "'" + *option + "' is no option of this command" +
         (meant.empty() ? "" : "; did you mean '" + meant + "'?");
}

int run_command(const Call& call, Console& console) {
  if (!call.command->subcommands.empty()) {
    throw UsageError("tooldb " + call.path + "needs a command");
  }
  CLI::App app;
  app.allow_windows_style_options(false);  // "/lib" is a path on every system
  app.set_help_flag();
  const Action action = call.command->declare(app);
  try {
    // The parser takes the words from the end.
    app.parse(std::vector<std::string>(call.arguments.rbegin(), call.arguments.rend()));
  } catch (const CLI::ExtrasError&) {
    throw UsageError(unexpected(app));
  } catch (const CLI::ParseError& error) {
    throw UsageError(error.what());
  }
  action(console);
  return console.Failed() ? kFailed : kDone;
}

int run_call(const Call& call, Console& console) {
  console.SetQuiet(call.quiet);
  if (call.version) {
    console.Print("tooldb " TOOLDB_VERSION "\n");
  } else if (call.command == nullptr && !call.help) {
    throw UsageError("a command is missing");
  } else if (call.command == nullptr) {
    console.Print(program_help());
  } else if (call.help) {
    console.Print(command_help(*call.command, call.path));
  } else {
    return run_command(call, console);
  }
  return console.Failed() ? kFailed : kDone;
}

}  // namespace

std::unique_ptr<CLI::App> described(const Command& command) {
  auto app = std::make_unique<CLI::App>();
  app->set_help_flag();
  if (command.declare != nullptr) command.declare(*app);
  return app;
}

int run_program(const std::vector<std::string>& arguments) {
  Console console;
  Call call;
  try {
    read_call(arguments, call);
    return run_call(call, console);
  } catch (const UsageError& error) {
    console.Error(error.what());
    console.Note("\"tooldb " + call.path + "--help\" shows how it is called");
    return kUsage;
  } catch (const Failure& failure) {
    console.Error(failure.what());
  }
  console.Failed();
  return kFailed;
}

}  // namespace tooldb
