#pragma once

#include <boost/system/error_code.hpp>
#include <string>

#include "tooldb/platform/file_system.h"

namespace tooldb {

/// Raises `FileError` with the system's reason.
[[noreturn]] inline void raise_system_error(const std::string& path,
                                            const boost::system::error_code& reason) {
  throw FileError(path, reason.message());
}

/// The failure of the operating system's last call.
boost::system::error_code last_system_error();

}  // namespace tooldb
