#pragma once

#include <functional>
#include <string>

class tdbToolComponent;
class tdbToolComponentsDB;

/// @file
/// Where the reader finds the library components that tools use.

namespace tooldb {

/// The listed component of exactly that code, borrowed; null when there is none. The storage layer
/// defines it.
const tdbToolComponent* find_library_component(tdbToolComponentsDB& db, const std::string& code);

/// The component of a code, borrowed, or null.
using ComponentFinder = std::function<const tdbToolComponent*(const std::string& code)>;

}  // namespace tooldb
