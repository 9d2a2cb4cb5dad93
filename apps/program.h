#pragma once

#include <CLI/App.hpp>
#include <memory>
#include <string>
#include <vector>

#include "apps/command.h"

/// @file
/// The program as a whole: its arguments, built from the table of commands.

namespace tooldb {

inline constexpr int kDone = 0;
inline constexpr int kFailed = 1;
inline constexpr int kUsage = 2;

/// Runs the program.
/// @param arguments  without the program's name
/// @return the exit code
int run_program(const std::vector<std::string>& arguments);

/// The arguments of one command, as its help and completion show them.
std::unique_ptr<CLI::App> described(const Command& command);

/// Help of the whole program, and of one command; `path` is the words that call it, each with a
/// blank behind it.
std::string program_help();
std::string command_help(const Command& command, const std::string& path);

}  // namespace tooldb
