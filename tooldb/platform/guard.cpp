#include "tooldb/platform/guard.h"

#include <exception>
#include <string_view>

namespace tooldb {

namespace {

/// Without memory for the text the code has to do.
void set_error(tdbError& error, int code, std::string_view text) noexcept {
  error.code = code;
  try {
    error.message = text;
  } catch (...) {
    error.message.clear();
  }
}

}  // namespace

void describe_current_exception(tdbError& error) noexcept {
  try {
    throw;
  } catch (const tdbError& raised) {
    set_error(error, raised.code, raised.message);
  } catch (const std::exception& raised) {
    set_error(error, 1, raised.what());
  } catch (...) {
    set_error(error, 1, "unknown failure");
  }
}

}  // namespace tooldb
