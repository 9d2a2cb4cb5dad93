#pragma once

#include <string>
#include <string_view>

#include "tooldb/error.h"

/// @file
/// Errors in the content of a file name the file.

namespace tooldb {

inline void name_file(tdbError& error, std::string_view path) {
  error.message.insert(0, std::string(path) + ": ");
}

/// Runs a body that reads the content of a file: what it raises names the file.
template <class Body>
auto with_file_name(std::string_view path, Body&& body) {
  try {
    return body();
  } catch (tdbError& error) {
    name_file(error, path);
    throw;
  }
}

}  // namespace tooldb
