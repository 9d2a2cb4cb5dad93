#pragma once

#include <string>

#include "tooldb/platform/file_system.h"

namespace tooldb {

/// The path of a file in a folder; raises `FileError` for a name with a NUL, beyond which the
/// system would not look, and so find another file.
inline std::string path_in(const std::string& folder, const std::string& name) {
  if (name.find('\0') != std::string::npos) throw FileError(folder, "NUL in the name of a file");
  return folder + '/' + name;
}

}  // namespace tooldb
