#pragma once

#include <CLI/App.hpp>
#include <functional>
#include <memory>
#include <span>
#include <stdexcept>
#include <string_view>

/// @file
/// A command of the program: one row of a table from which arguments, help, completion and manual
/// are made.

namespace tooldb {

class Console;

/// Ends a command with the exit code 1; the text goes to the user.
struct Failure : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Ends a command with the exit code 2: it was called wrongly.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct Example {
  std::string_view line;
  std::string_view meaning;
};

/// What runs once the arguments are known.
using Action = std::function<void(Console&)>;

struct Command {
  std::string_view name;
  std::string_view help;     ///< one line, no full stop
  std::string_view details;  ///< paragraphs, each one line of any length, an empty line between
  std::span<const Example> examples;
  /// Adds the command's arguments to `app`; what it returns runs when the command was given.
  Action (*declare)(CLI::App& app);
  /// A command that is a group names its commands here, and `declare` is null.
  std::span<const Command* const> subcommands;
};

/// `Command::declare` of a command with options: `add_arguments` adds the arguments, each with its
/// place in the options, and `run` gets the options once they are known.
template <class Options, void (*add_arguments)(CLI::App&, Options&),
          void (*run)(const Options&, Console&)>
Action declare(CLI::App& app) {
  auto options = std::make_shared<Options>();
  add_arguments(app, *options);
  return [options](Console& console) { run(*options, console); };
}

/// Every command, in the order of the help.
std::span<const Command* const> commands();

}  // namespace tooldb
