#pragma once

#include <memory>
#include <string>
#include <vector>

#include "apps/database_folder.h"
#include "tooldb/tool_components_db.h"
#include "tooldb/tool_parts.h"

namespace tooldb {

inline constexpr const char* kComponentExtension = ".ktcf";

/// A component that was read to be changed.
struct ComponentToEdit {
  std::unique_ptr<tdbToolComponent> component;  ///< a copy
  std::string code;                             ///< of the file that it was read from
  std::string bytes;                            ///< of that file
};

/// A folder of library components, all of them read.
class ComponentFolder {
 public:
  /// Raises `Failure` when there is no such folder or, for writing, when nothing can be written
  /// there. A component that cannot be read is reported.
  ComponentFolder(const std::string& path, Use use, Console& console);

  const std::string& Path() const { return path_; }
  tdbToolComponentsDB& Database() { return database_; }
  /// Names of the component files, in byte order.
  std::vector<std::string> FileNames() const;
  std::string FilePath(const std::string& code) const;
  bool HasFile(const std::string& code) const;
  std::vector<tdbToolComponent*> All();
  /// Null when there is none.
  tdbToolComponent* Find(const std::string& code);
  /// Raises `Failure`, with the nearest code, when there is none.
  tdbToolComponent& Require(const std::string& code);
  /// Reads a component afresh to be changed. Raises `Failure`.
  ComponentToEdit ReadToEdit(const std::string& code);
  /// Raises `Failure` when the component's file is not as it was when it was read.
  void CheckUnchanged(const ComponentToEdit& edited) const;
  /// Writes a component; one of the same code is replaced. Raises `Failure`.
  void Write(std::unique_ptr<tdbToolComponent> component);
  /// Deletes a component and its file. Raises `Failure`.
  void Remove(const std::string& code);

 private:
  std::string path_;
  tdbToolComponentsDB database_;
};

}  // namespace tooldb
