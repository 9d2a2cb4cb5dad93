#include "tooldb/platform/system_file_system.h"

#include <boost/filesystem/operations.hpp>

#include "tooldb/platform/file_name.h"
#include "tooldb/platform/system_error.h"

namespace tooldb {

namespace {

namespace fs = boost::filesystem;
using boost::system::error_code;

/// Kind of what stands at `path`; raises when that cannot be found out.
fs::file_type type_of(const std::string& path) {
  require_plain_path(path);
  error_code failure;
  const fs::file_status status = fs::status(path, failure);
  if (status.type() == fs::status_error) raise_system_error(path, failure);
  return status.type();
}

}  // namespace

void SystemFileSystem::Remove(const std::string& path) {
  require_plain_path(path);
  error_code failure;
  if (fs::remove(path, failure)) return;
  if (!failure) failure = make_error_code(boost::system::errc::no_such_file_or_directory);
  raise_system_error(path, failure);
}

void SystemFileSystem::CreateFolder(const std::string& path) {
  require_plain_path(path);
  error_code failure;
  fs::create_directory(path, failure);
  if (failure) raise_system_error(path, failure);
}

std::vector<std::string> SystemFileSystem::List(const std::string& folder) {
  require_plain_path(folder);
  std::vector<std::string> names;
  error_code failure;
  fs::directory_iterator entry(folder, failure);
  while (!failure && entry != fs::directory_iterator()) {
    const fs::path& path = entry->path();
    if (entry->status(failure).type() == fs::regular_file) {
      names.push_back(path.filename().string());
    } else if (entry->status(failure).type() == fs::status_error) {
      raise_system_error(path.string(), failure);
    }
    entry.increment(failure);
  }
  if (failure) raise_system_error(folder, failure);
  return names;
}

bool SystemFileSystem::IsFile(const std::string& path) { return type_of(path) == fs::regular_file; }

bool SystemFileSystem::IsFolder(const std::string& path) {
  return type_of(path) == fs::directory_file;
}

bool SystemFileSystem::IsSameFile(const std::string& a, const std::string& b) {
  error_code failure;
  return fs::equivalent(a, b, failure) && !failure;
}

std::int64_t SystemFileSystem::LastWriteTime(const std::string& path) {
  require_plain_path(path);
  error_code failure;
  const std::time_t time = fs::last_write_time(path, failure);
  if (failure) raise_system_error(path, failure);
  return time;
}

}  // namespace tooldb
