#pragma once

#include <CLI/App.hpp>
#include <string>

#include "apps/command.h"
#include "apps/console.h"
#include "tooldb/error.h"
#include "tooldb/file_manager.h"
#include "tooldb/util.h"

/// @file
/// What the folders of tools and of components have in common.

namespace tooldb {

/// What a folder is opened for.
enum class Use { kRead, kWrite };

/// "FILE: message", or the message alone when it names the file already.
std::string file_message(const std::string& file, const tdbError& error);

/// The bytes of a file; raises `Failure`.
std::string file_bytes(const std::string& path);

/// Adds the option --force of the commands that change what was read.
void add_force_option(CLI::App& app, bool& force);

/// Raises `Failure` unless the file at `path` still holds `bytes`, which it held when it was read
/// to be changed.
void require_unchanged(const std::string& path, const std::string& bytes);

/// The code that a file in a database folder stands for.
std::string code_of_file(const std::string& name);

/// Hands what a database reports to a console, as errors.
template <class Database, class Sender>
void report_errors(Database& database, Console& console) {
  const auto report = [](void* user, Sender, tdbError* error) {
    static_cast<Console*>(user)->Error(file_message("", *error));
    return 0;
  };
  database.SetErrorCallback(report, &console);
}

/// Raises `Failure` unless there is a folder at `path`; its text tells one that is not there from
/// one that the system refuses.
void require_folder(const std::string& path);

/// Opens the folder of a database. For reading nothing is tried out in it, so that a folder which
/// cannot be written serves as well. Raises `Failure`.
template <class Database>
void open_folder(Database& database, const std::string& folder, Use use) {
  require_folder(folder);
  database.SetFolderPath(folder.c_str());
  tdbError error;
  std::string path = folder;
  tdbFileManager& files = *database.GetFileManager();
  const bool opened = use == Use::kWrite ? files.Init(path, error) : files.Create(path, error);
  if (!opened) throw Failure(folder + ": the folder cannot be written (" + error.message + ")");
  database.AddSearchPaths({folder});
}

}  // namespace tooldb
