#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tooldb/error.h"
#include "tooldb/export.h"
#include "tooldb/file_manager.h"
#include "tooldb/object.h"

class tdbToolComponent;

namespace tooldb {
class ComponentLink;
}

/// A library of components: as `tdbToolDB`, with one ".ktcf" file per component.
///
/// What is added to it or read into it becomes a definition: the component and all below it get the
/// component mark. The before-delete callback fires once for each component that a removal takes
/// out of the library, not for one that is replaced or read again, and not when the database is
/// destroyed.
class TDB_EXPORT tdbToolComponentsDB : public tdbObject {
 public:
  using BeforeDeleteCallback = void (*)(void* user, tdbToolComponent* component);
  using ErrorCallback = int (*)(void* user, tdbToolComponentsDB* db, tdbError* error);
  using LogCallback = int (*)(void* user, tdbToolComponentsDB* db, std::string message);

  tdbToolComponentsDB();
  tdbToolComponentsDB(const char* name, long flags);
  tdbToolComponentsDB(const tdbToolComponentsDB& other);
  tdbToolComponentsDB& operator=(const tdbToolComponentsDB& other);
  ~tdbToolComponentsDB() override;

  tdbObject* Clone() const override;
  void WriteXml(std::string& out, const std::vector<std::string>& search_paths) const override;
  void WriteXml(std::string& out, const std::vector<std::string>& search_paths);

  virtual bool Create(std::string folder);
  virtual bool Init(std::string folder);
  virtual bool Available() const;
  virtual bool Read();
  virtual bool Reload(const std::vector<std::string>& codes);
  virtual bool ImportFromFile(const char* path, const std::vector<std::string>& codes);
  virtual bool ImportFromXml(const char* xml, const std::vector<std::string>& codes);
  TDB_SLOTS2((virtual bool AddTool(tdbToolComponent* component, tdbError& error, bool replace)),
             (virtual bool AddTool(tdbToolComponent* component, bool replace)));
  /// Deletes the file, calls the before-delete callback while the component is still listed, and
  /// takes it out of the list; it is then the caller's.
  TDB_SLOTS2((virtual bool RemoveTool(tdbToolComponent* component, tdbError& error)),
             (virtual bool RemoveTool(tdbToolComponent* component)));
  TDB_SLOTS2((virtual bool UpdateTool(tdbToolComponent* component, tdbError& error)),
             (virtual bool UpdateTool(tdbToolComponent* component)));
  /// @param key  2 the type, any other value the code
  virtual void Sort(int key, bool ascending);
  virtual void AddSearchPaths(const std::vector<std::string>& paths);
  virtual void SetBeforeDeleteCallback(BeforeDeleteCallback callback, void* user);

  int GetCount(int source);
  tdbToolComponent* GetToolComponent(int position, int source);
  tdbToolComponent* GetToolComponentByCode(const std::string& code, int source);
  void GetTools(std::vector<tdbToolComponent>& out, int source);
  bool IsToolCodeExists(const std::string& code);  ///< unencoded, as in `tdbToolDB`
  /// Removes a listed component with its file and deletes it; false when there is none.
  bool RemoveToolComponentByCode(std::string code);
  void RemoveAllToolComponents(bool also_files, int source);
  bool Export(std::string target, std::string name, const std::vector<std::string>& codes);

  void SetErrorCallback(ErrorCallback callback, void* user);
  void SetLogCallback(LogCallback callback, void* user);
  void Error(int code, const std::string& text);
  void Error(tdbError* error);
  void Log(const std::string& message);

  bool IsModified() const { return tdbObject::IsModified(); }
  void SetModifiedFlag(bool modified) { SetModified(modified); }
  void SetFolderPath(const char* path);
  const std::string& GetFolderPath() const;
  tdbFileManager* GetFileManager();
  void Deprecated_SetPath(const char* path);
  const std::string& Deprecated_GetKtcPath() const;

 private:
  friend class tooldb::ComponentLink;

  struct Impl;
  std::unique_ptr<Impl> impl_;
};
