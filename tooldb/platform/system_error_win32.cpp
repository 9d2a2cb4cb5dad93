#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include "tooldb/platform/system_error.h"

namespace tooldb {

namespace {

bool is_read_only(const std::string& path) {
  const DWORD attributes = GetFileAttributesA(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0 &&
         (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

}  // namespace

std::string reason_text(const std::string& path, const boost::system::error_code& reason) {
  switch (static_cast<DWORD>(reason.value())) {
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
      return "The file is open in another program";
    case ERROR_ACCESS_DENIED:
      if (is_read_only(path)) return "The file is read-only";
      break;
    case ERROR_DIRECTORY:
      return "Not a directory";
    case ERROR_FILENAME_EXCED_RANGE:
      return "File name too long";
    default:
      break;
  }
  const auto known = reason.default_error_condition();
  return known.category() == boost::system::generic_category() ? known.message() : reason.message();
}

boost::system::error_code last_system_error() {
  return {static_cast<int>(GetLastError()), boost::system::system_category()};
}

}  // namespace tooldb
