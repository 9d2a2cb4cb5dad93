#pragma once

#include <CLI/App.hpp>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tooldb/tool.h"
#include "tooldb/tool_components_db.h"
#include "tooldb/tool_db.h"
#include "tooldb/tool_parts.h"

/// @file
/// The folder that a command works on.

namespace tooldb {

class Console;

/// Code of the library's error for a code that has a file.
inline constexpr int kFileExists = 19;
/// Code of the library's error for a component that is not there.
inline constexpr int kComponentNotFound = 21;

inline constexpr const char* kToolExtension = ".ktf";
inline constexpr const char* kComponentExtension = ".ktcf";

/// Where a library lies, as it was typed.
struct FolderOptions {
  std::string folder;
  std::string components;  ///< empty: the folder "components" inside, if there is one
};

/// Adds the argument FOLDER and the option --components.
void add_folder_arguments(CLI::App& app, FolderOptions& options);

/// Adds the option --force of the commands that change a tool.
void add_force_option(CLI::App& app, bool& force);

/// A tool that was read to be changed.
struct ToolToEdit {
  std::unique_ptr<tdbTool> tool;
  std::string code;   ///< of the file that it was read from
  std::string bytes;  ///< of that file
};

/// A folder of tools, with the components that they use.
class ToolFolder {
 public:
  enum class Use { kRead, kWrite };

  /// Raises `Failure` when there is no such folder or, for writing, when nothing can be written
  /// there. What the library reports while it works goes to the console as errors.
  ToolFolder(const FolderOptions& options, Use use, Console& console);

  const std::string& Path() const { return path_; }
  /// Names of the tool files, in byte order.
  std::vector<std::string> FileNames() const;
  /// Codes of the tool files, in the same order.
  std::vector<std::string> Codes() const;
  /// The file of a code, whether or not it is there.
  std::string FilePath(const std::string& code) const;
  bool HasFile(const std::string& code) const;

  /// Reads a tool file with its placements up to date; null with `error` filled on failure.
  std::unique_ptr<tdbTool> ReadFile(const std::string& name, tdbError& error);
  /// Reads every tool file; one that cannot be read is reported and left out.
  std::vector<std::unique_ptr<tdbTool>> ReadAll();
  /// Reads the tool of a code; raises `Failure`, with the nearest code if there is one.
  std::unique_ptr<tdbTool> ReadTool(const std::string& code);
  ToolToEdit ReadToEdit(const std::string& code);
  /// Raises `Failure` when the tool's file is not as it was when the tool was read.
  void CheckUnchanged(const ToolToEdit& edited) const;

  /// Writes a tool whose code has no file yet; raises `Failure`.
  void AddNew(std::unique_ptr<tdbTool> tool);
  /// Rewrites the file of a tool.
  void Update(tdbTool& tool);

  /// Writes a component and keeps it in memory for the tools that use it; makes the folder
  /// "components" inside when there is none. One of the same code is replaced.
  void WriteComponent(std::unique_ptr<tdbToolComponent> component);

  /// The database of the folder; nothing is listed in it.
  tdbToolDB& Database() { return database_; }
  /// Null when no components folder was named or found.
  tdbToolComponentsDB* Components() { return components_ ? &*components_ : nullptr; }
  const std::string& ComponentsPath() const { return components_path_; }
  const std::vector<std::string>& SearchPaths() {
    return database_.GetFileManager()->GetSearchPath();
  }

 private:
  void OpenComponents(const std::string& folder, Use use);

  Console& console_;
  std::string path_;
  std::string components_path_;
  std::optional<tdbToolComponentsDB> components_;  // outlives the database that it is linked to
  tdbToolDB database_;
};

/// "FILE: message", or the message alone when it names the file already.
std::string file_message(const std::string& file, const tdbError& error);

/// The bytes of a file; raises `Failure`.
std::string file_bytes(const std::string& path);

}  // namespace tooldb
