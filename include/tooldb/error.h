#pragma once

#include <string>

#include "tooldb/export.h"

/// What went wrong: a number and a text.
///
/// Codes that the library sets: 1 general (also the code of a new record), 3 unknown type name in
/// a document, 19 a file of that code exists, 21 component not found, 22 empty code.
class TDB_EXPORT tdbError {
 public:
  tdbError() = default;
  explicit tdbError(int error_code) : code(error_code) {}
  tdbError(int error_code, const std::string& error_message)
      : code(error_code), message(error_message) {}

  int code = 1;
  std::string message;
};
