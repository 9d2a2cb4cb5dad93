#pragma once

#include <CLI/App.hpp>
#include <functional>
#include <string>
#include <vector>

#include "apps/tool_folder.h"

namespace tooldb {

/// Where components lie, and the tools that use them.
struct ComponentOptions {
  std::string folder;   ///< of the components
  std::string library;  ///< of the tools; empty: the folder around, when that holds tools
};

/// Adds the argument FOLDER and, with `uses`, the option --library.
void add_component_arguments(CLI::App& app, ComponentOptions& options);
void add_library_option(CLI::App& app, ComponentOptions& options);

/// The library whose tools use the components; empty when none was named or found.
std::string library_around(const ComponentOptions& options);

/// Codes of the library's tools that use a component.
std::vector<std::string> tools_using(const ComponentOptions& options, const std::string& code,
                                     Console& console);

/// Lets the tools of the library use another component, and rewrites their files.
/// @return how many
std::size_t redirect_uses(const ComponentOptions& options, const std::string& code,
                          const std::string& new_code, Console& console);

}  // namespace tooldb
