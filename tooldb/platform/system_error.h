#pragma once

#include <boost/system/error_code.hpp>
#include <string>

#include "tooldb/platform/file_system.h"

namespace tooldb {

/// Why a call on `path` failed, in the same words on every system where it gives the same reason.
std::string reason_text(const std::string& path, const boost::system::error_code& reason);

/// Raises `FileError` with the system's reason.
[[noreturn]] inline void raise_system_error(const std::string& path,
                                            const boost::system::error_code& reason) {
  throw FileError(path, reason_text(path, reason));
}

/// The failure of the operating system's last call.
boost::system::error_code last_system_error();

}  // namespace tooldb
