#pragma once

#include <CLI/App.hpp>
#include <string>
#include <string_view>

namespace tooldb {

class Console;

/// Adds the option -o, --output.
void add_output_option(CLI::App& app, std::string& path, const std::string& help);

/// Writes a file whole or not at all; "-" and nothing stand for standard output. Raises `Failure`.
void write_output(const std::string& path, std::string_view bytes, Console& console);

}  // namespace tooldb
