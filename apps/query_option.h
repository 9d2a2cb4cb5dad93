#pragma once

#include <CLI/App.hpp>
#include <functional>
#include <string>

class tdbTool;

namespace tooldb {

/// Adds the option --where.
void add_where_option(CLI::App& app, std::string& expression);

/// The test that an expression stands for; an empty one selects every tool. Raises `UsageError`
/// that points at the fault.
std::function<bool(tdbTool&)> tool_filter(const std::string& expression);

/// Raises `UsageError`, with the nearest name, when no field is called so.
void require_field(const std::string& option, const std::string& name);

}  // namespace tooldb
