#pragma once

#include <utility>

#include "tooldb/error.h"

/// @file
/// The boundary of the library: no exception crosses it.

namespace tooldb {

/// Fills `error` from the exception that is being handled. An exception that is no `tdbError` has
/// code 1 and its own text.
void describe_current_exception(tdbError& error) noexcept;

/// Runs the body of an exported function; its result, or `on_failure` with `error` filled when it
/// raises.
template <class Result, class Body>
Result guarded(tdbError& error, Result on_failure, Body&& body) {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    describe_current_exception(error);
  }
  return on_failure;
}

/// The same where the value says enough.
template <class Result, class Body>
Result guarded(Result on_failure, Body&& body) {
  tdbError ignored;
  return guarded(ignored, std::move(on_failure), std::forward<Body>(body));
}

}  // namespace tooldb
