#include <algorithm>
#include <boost/filesystem/path.hpp>
#include <exception>

#include "tooldb/platform/file_system.h"
#include "tooldb/platform/guard.h"
#include "tooldb/platform/safe_write.h"
#include "tooldb/util.h"

using tooldb::file_system;
using tooldb::FileError;
using tooldb::folder_of;
using tooldb::guarded;

namespace {

// The letter a stands twice and p is missing; the names that are drawn depend on it.
constexpr const char* kRandomNameAlphabet =
    "abcdefghijklmnaoqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ1234567890";

/// The answer of a test of the file system; false when it raises.
template <class Test>
bool holds(Test&& test) {
  tdbError ignored;
  return guarded(ignored, false, test);
}

bool has_extension(const std::string& name, const std::string& extension) {
  return name.size() > extension.size() && name.ends_with(extension) &&
         !tooldb::is_temporary_file_name(name);
}

/// Runs `action` for each name, and raises the first of its failures after the last.
template <class Action>
void for_each_name(const std::vector<std::string>& names, Action&& action) {
  std::exception_ptr failure;
  for (const std::string& name : names) {
    try {
      action(name);
    } catch (const tdbError&) {
      if (!failure) failure = std::current_exception();
    }
  }
  if (failure) std::rethrow_exception(failure);
}

/// Creates an empty file under a random name in the folder, and returns its path. A process that is
/// killed now leaves it to the next sweep of the folder.
std::string created_probe(const std::string& folder) {
  // The names come in the same order in every process, so another one's probe may stand there.
  constexpr int kMostAttempts = 1000;
  for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
    std::string path = folder + '/' + tdbUtil::generate_random_string(6, kRandomNameAlphabet);
    if (file_system().CreateProbe(path)) return path;
  }
  throw FileError(folder, "no free name for a probe file");
}

void require_folder(const std::string& folder) {
  if (folder.empty()) throw tdbError(1, "Folder path empty");
  if (!tdbFileUtil::directory_exists(folder)) throw tdbError(1, folder + " is not a directory");
}

void move_without_replacing(const std::string& from, const std::string& to) {
  if (from == to) return;
  if (file_system().IsFile(to)) throw FileError(to, "file exists");
  file_system().Rename(from, to);
}

}  // namespace

bool tdbFileUtil::file_exists(const std::string& path) {
  return holds([&] { return file_system().IsFile(path); });
}

bool tdbFileUtil::directory_exists(const std::string& path) {
  return holds([&] { return file_system().IsFolder(path); });
}

void tdbFileUtil::create_directory(const std::string& path) { file_system().CreateFolder(path); }

bool tdbFileUtil::copy_file(const std::string& from, const std::string& to) {
  return holds([&] {
    write_file(to, file_system().Read(from));
    return true;
  });
}

void tdbFileUtil::remove_file(const std::string& path) {
  file_system().Remove(path);
  file_system().FlushFolder(folder_of(path));
}

void tdbFileUtil::rename_file(std::string from, std::string to) {
  file_system().Rename(from, to);
  file_system().FlushFolder(folder_of(to));
}

void tdbFileUtil::read_file(const std::string& path, std::string& text) {
  text = file_system().Read(path);
}

void tdbFileUtil::write_file(const std::string& path, const std::string& text) {
  tooldb::replace_file(path, text);
  file_system().FlushFolder(folder_of(path));
}

void tdbFileUtil::get_files(const std::string& folder, std::vector<std::string>& out,
                            std::string extension) {
  out = file_system().List(folder);
  std::erase_if(out, [&](const std::string& name) { return !has_extension(name, extension); });
  std::sort(out.begin(), out.end());
}

int tdbFileUtil::get_file_count(const std::string& folder, std::string extension) {
  std::vector<std::string> names;
  get_files(folder, names, std::move(extension));
  return static_cast<int>(names.size());
}

std::int64_t tdbFileUtil::get_last_write_time(const std::string& path) {
  return file_system().LastWriteTime(path);
}

void tdbFileUtil::get_file_name(const std::string& path, std::string& name) {
  name = boost::filesystem::path(path).filename().string();
  const auto dot = name.rfind('.');
  if (dot != std::string::npos) name.erase(dot);
}

void tdbFileUtil::get_file_extension(const std::string& path, std::string& extension) {
  const std::string name = boost::filesystem::path(path).filename().string();
  const auto dot = name.rfind('.');
  extension = dot == std::string::npos ? std::string() : name.substr(dot);
}

bool tdbFileUtil::path_contains_file(std::string& path, std::string& file) {
  const auto folder = boost::filesystem::path(path).lexically_normal();
  const auto relative = boost::filesystem::path(file).lexically_normal().lexically_relative(folder);
  return !relative.empty() && *relative.begin() != ".." && relative != ".";
}

bool tdbFileUtil::is_directory_writable(std::string folder, tdbError& error) {
  try {
    const std::string probe = created_probe(folder);
    guarded(error, 0, [&] {
      file_system().Remove(probe);
      return 0;
    });
    return true;
  } catch (const tdbError&) {
    error.message = folder;
    return false;
  }
}

void tdbFileUtil::remove_all_file_into_directory(const std::string& folder) {
  for_each_name(file_system().List(folder),
                [&](const std::string& name) { file_system().Remove(folder + '/' + name); });
  file_system().FlushFolder(folder);
}

bool tdbFileUtil::change_extension_file_to_folder(std::string from, std::string to,
                                                  std::string extension, tdbError& error) {
  return guarded(error, false, [&] {
    require_folder(from);
    require_folder(to);
    for_each_name(file_system().List(from), [&](const std::string& name) {
      std::string stem;
      get_file_name(name, stem);
      move_without_replacing(from + '/' + name, to + '/' + stem + extension);
    });
    file_system().FlushFolder(from);
    file_system().FlushFolder(to);
    return true;
  });
}
