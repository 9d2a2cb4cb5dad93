#include "tooldb/platform/system_file_system.h"

#include <boost/filesystem/operations.hpp>

#include "tooldb/platform/file_name.h"
#include "tooldb/platform/system_error.h"

namespace tooldb {

namespace {

namespace fs = boost::filesystem;

/// What Boost answers; `FileError` for what it raises. Its forms that fill an error code are
/// noexcept, though on Windows some of them allocate: short of memory they would end the process.
template <class Call>
auto answer_of(const std::string& path, Call&& call) {
  require_plain_path(path);
  try {
    return call();
  } catch (const fs::filesystem_error& failure) {
    const fs::path& where = failure.path1();
    raise_system_error(where.empty() ? path : where.string(), failure.code());
  }
}

/// Kind of what stands at `path`; raises when that cannot be found out.
fs::file_type type_of(const std::string& path) {
  return answer_of(path, [&] { return fs::status(path).type(); });
}

}  // namespace

void SystemFileSystem::Remove(const std::string& path) {
  if (answer_of(path, [&] { return fs::remove(path); })) return;
  raise_system_error(path, make_error_code(boost::system::errc::no_such_file_or_directory));
}

void SystemFileSystem::CreateFolder(const std::string& path) {
  answer_of(path, [&] { return fs::create_directory(path); });
}

std::vector<std::string> SystemFileSystem::List(const std::string& folder) {
  return answer_of(folder, [&] {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
      if (entry.status().type() != fs::regular_file) continue;
      names.push_back(entry.path().filename().string());
    }
    return names;
  });
}

bool SystemFileSystem::IsFile(const std::string& path) { return type_of(path) == fs::regular_file; }

bool SystemFileSystem::IsFolder(const std::string& path) {
  return type_of(path) == fs::directory_file;
}

bool SystemFileSystem::IsSameFile(const std::string& a, const std::string& b) {
  try {
    return fs::equivalent(a, b);
  } catch (const fs::filesystem_error&) {
    return false;
  }
}

std::int64_t SystemFileSystem::LastWriteTime(const std::string& path) {
  return answer_of(path, [&] { return fs::last_write_time(path); });
}

}  // namespace tooldb
