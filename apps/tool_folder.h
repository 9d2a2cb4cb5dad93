#pragma once

#include <CLI/App.hpp>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "apps/component_folder.h"
#include "apps/database_folder.h"
#include "tooldb/tool.h"
#include "tooldb/tool_db.h"

/// @file
/// The folder that a command works on.

namespace tooldb {

/// Code of the library's error for a code that has a file.
inline constexpr int kFileExists = 19;
/// Code of the library's error for a component that is not there.
inline constexpr int kComponentNotFound = 21;

/// Name of the folder inside a library that holds its components.
inline constexpr const char* kComponentsFolder = "components";

inline constexpr const char* kToolExtension = ".ktf";

/// Where a library lies, as it was typed.
struct FolderOptions {
  std::string folder;
  std::string components;  ///< empty: the folder "components" inside, if there is one
};

/// Adds the argument FOLDER and the option --components.
void add_folder_arguments(CLI::App& app, FolderOptions& options);

/// The same, and the argument CODE of the commands that work on one tool.
void add_tool_arguments(CLI::App& app, FolderOptions& options, std::string& code);

/// A tool that was read to be changed.
struct ToolToEdit {
  std::unique_ptr<tdbTool> tool;
  std::string code;   ///< of the file that it was read from
  std::string bytes;  ///< of that file
};

/// A folder of tools, with the components that they use.
class ToolFolder {
 public:
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

  /// Takes what was read of a file: a tool with its placements up to date, or null and the error.
  using TakeFile = std::function<void(const std::string& name, std::unique_ptr<tdbTool> tool,
                                      const tdbError& error)>;
  /// Reads tool files, many at once, and has each taken in its turn.
  void ReadFiles(const std::vector<std::string>& names, const TakeFile& take);
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

  /// The database of the folder; nothing is listed in it.
  tdbToolDB& Database() { return database_; }
  /// Null when no components folder was named or found.
  ComponentFolder* Components() { return components_.get(); }
  /// The database of the components, for the reader; null as above.
  tdbToolComponentsDB* ComponentsDatabase();
  /// The same folder; made inside this one when there is none.
  ComponentFolder& RequireComponents();
  const std::vector<std::string>& SearchPaths() {
    return database_.GetFileManager()->GetSearchPath();
  }

 private:
  std::string InnerComponents() const;
  void OpenComponents(const std::string& folder, Use use);

  Console& console_;
  std::string path_;
  std::unique_ptr<ComponentFolder> components_;  // outlives the database that it is linked to
  tdbToolDB database_;
};

}  // namespace tooldb
