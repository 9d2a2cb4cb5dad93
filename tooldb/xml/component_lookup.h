#pragma once

#include <functional>
#include <string>
#include <vector>

class tdbToolComponent;
class tdbToolComponentsDB;

/// @file
/// Where the reader finds the library components that tools use.

namespace tooldb {

/// The listed component of exactly that code, borrowed; null when there is none. The storage layer
/// defines it.
const tdbToolComponent* find_library_component(tdbToolComponentsDB& db, const std::string& code);

/// The component of a code, borrowed, or null. Empty where there is no library of components.
using ComponentFinder = std::function<const tdbToolComponent*(const std::string& code)>;

/// A finder in a database, which is borrowed; empty for null.
inline ComponentFinder finder_in(tdbToolComponentsDB* db) {
  if (db == nullptr) return nullptr;
  return [db](const std::string& code) { return find_library_component(*db, code); };
}

/// What a reader needs beside the document.
struct ReadContext {
  const std::vector<std::string>& search_paths;  ///< borrowed
  ComponentFinder find_component;
};

}  // namespace tooldb
