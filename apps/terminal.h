#pragma once

#include <cstdio>
#include <optional>
#include <string>

/// @file
/// The terminal and the environment that the program runs in.

namespace tooldb {

bool is_terminal(std::FILE* stream);
/// Columns of the terminal that standard output goes to; nothing when it goes elsewhere.
std::optional<int> terminal_width();
/// Makes standard output carry bytes as they are, where the system would change line ends.
void use_binary_output();
/// The value of an environment variable; empty when it is not set.
std::string environment(const char* name);

}  // namespace tooldb
