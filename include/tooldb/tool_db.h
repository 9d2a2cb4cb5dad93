#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tooldb/error.h"
#include "tooldb/export.h"
#include "tooldb/file_manager.h"
#include "tooldb/object.h"

class tdbTool;
class tdbToolComponent;
class tdbToolComponentsDB;

/// A library of tools: a list in memory, kept in step with a folder of one ".ktf" file per tool.
///
/// Lookups take a `source`: 1 is the list in memory, and what they return is borrowed until the
/// tool leaves the list; any other value is the folder, the file is read at each call and the
/// caller owns the result. Flag bit 0 makes the database memory only: nothing is written or read,
/// and lookups in the folder find nothing.
///
/// Operations with a `tdbError&` fill it when they answer false; those without hand the error to
/// the error callback. Error codes: 19 a file of that code exists, 21 component not found, 22
/// empty code, otherwise that of the file operation. No exception leaves the library, and one that
/// a callback raises is dropped. One thread at a time uses a database and its tools. Folders and
/// exports are read on all cores, yet every callback is made on the caller's thread, in the order
/// of the files.
/// A file that is written is flushed before it takes its name, and the folder before the operation
/// returns; imports, `Export` and the removal of all tools flush the folder once, at their end.
/// Should only that flush fail, the change stands and the error callback hears that a power cut may
/// undo it. Once written, a tool's modified marks are cleared and its placements are fresh.
///
/// Guard what people type, for three rules lose data. Texts are written as they stand: one with
/// `<`, `&` or `"` makes the file unreadable. "A/B" and "A{{47}}B" are two codes with one file. And
/// `AddTool` without `replace` looks for the code unencoded (`IsToolCodeExists`): one with any of
/// \ / : * ? " < > | is not found, and its file is replaced. A relative folder is looked up from
/// the current directory at each call, which `tdbFilter` changes.
class TDB_EXPORT tdbToolDB : public tdbObject {
 public:
  using AllowToolCallback = bool (*)(tdbTool* tool);
  using ErrorCallback = int (*)(void* user, const tdbToolDB* db, tdbError* error);
  using LogCallback = int (*)(void* user, tdbToolDB* db, std::string message);

  /// @param flags  bit 0: memory only
  tdbToolDB(const char* name, long flags);
  /// Copies settings and callbacks; the list and the folder start empty.
  tdbToolDB(const tdbToolDB& other);
  /// Copies settings, callbacks and folder; the tools listed here stay.
  tdbToolDB& operator=(const tdbToolDB& other);
  /// Deletes the listed tools, never a file.
  ~tdbToolDB() override;

  tdbObject* Clone() const override;
  /// Replaces `out` by a document of every listed tool, in list order.
  void WriteXml(std::string& out, const std::vector<std::string>& search_paths) const override;

  /// Makes the folder if it is missing, and opens it.
  virtual bool Create(std::string folder);
  /// Opens an existing folder; tools are not read.
  virtual bool Init(std::string folder);
  virtual bool Available() const;
  /// Appends the tools of the folder, in byte order of the file names, each updated and with its
  /// modified marks cleared. A file that cannot be read is reported and skipped.
  virtual bool Read();
  /// Reads the named tools, or all when `codes` is empty, afresh from the folder: a listed tool is
  /// replaced in place, any other appended. A code without a file is reported, and its listed tool
  /// stays.
  virtual bool Reload(const std::vector<std::string>& codes);
  /// Adds clones of the tools listed in `other`, replacing those of the same code. What cannot be
  /// added is reported, the others go on, and the answer is false; so with the other imports.
  virtual bool Import(tdbToolDB* other);
  /// Adds the tools of an export, replacing those of the same code; `codes` selects, empty: all.
  virtual bool ImportFromFile(const char* path, const std::vector<std::string>& codes);
  virtual bool ImportFromXml(const char* xml, const std::vector<std::string>& codes);
  /// Writes the tool's file and lists the tool. It is taken over on success and stays the
  /// caller's on failure, when list and folder are as before.
  /// @param replace  the listed tool whose code, trimmed and in upper case, is the new tool's code
  ///                 leaves the list and is deleted; false: error 19 when a file of the code exists
  TDB_SLOTS2((virtual bool AddTool(tdbTool* tool, tdbError& error, bool replace)),
             (virtual bool AddTool(tdbTool* tool, bool replace)));
  /// Deletes the tool's file and takes the tool out of the list; it is then the caller's.
  TDB_SLOTS2((virtual bool RemoveTool(tdbTool* tool, tdbError& error)),
             (virtual bool RemoveTool(tdbTool* tool)));
  /// Rewrites the tool's file.
  TDB_SLOTS2((virtual bool UpdateTool(tdbTool* tool, tdbError& error)),
             (virtual bool UpdateTool(tdbTool* tool)));
  /// Moves the file of `previous_code` to that of the tool's present code and rewrites it; error
  /// 19 when that is the file of another tool.
  TDB_SLOTS2((virtual bool RenameTool(std::string previous_code, tdbTool* tool, tdbError& error)),
             (virtual bool RenameTool(std::string previous_code, tdbTool* tool)));
  /// Adds a copy whose code is the tool's, " - Clone(n)" with the first free n.
  virtual bool CloneTool(tdbTool* tool, tdbError& error);
  /// Sorts the list; equal tools keep their order.
  /// @param key  2 type, 3 description, 4 trace colour, 5 length, 6 offset X, 7 diameter,
  ///             8 subtype, 9 offset Y, any other value the code: by number where both codes begin
  ///             with one, else as text without regard to case
  virtual void Sort(int key, bool ascending);
  virtual void AddSearchPaths(const std::vector<std::string>& paths);

  /// @name Lookup
  /// A tool read from the folder is as its file has it: `Update` it before asking for placements.
  /// By position, the files are in byte order of their names as the folder has them at the call.
  /// @{
  tdbTool* GetTool(int position, int source);
  const tdbTool* GetToolByCode(const std::string& code, int source) const;
  tdbTool* GetToolByCode(const std::string& code, int source);
  /// Copies the tool into `out`; false, and `out` untouched, when there is none.
  bool GetToolByCode(const std::string& code, tdbTool& out, int source);
  /// Empty when there is none.
  std::string GetToolCodebyPosition(int position, int source);
  int GetToolCount(int source);
  /// Appends copies.
  void GetTools(std::vector<tdbTool>& out, int source);
  /// True when the file `code` + ".ktf" exists. The code is used as it stands, not encoded, so a
  /// code with a character that file names cannot have is never found.
  bool IsToolCodeExists(const std::string& code);
  /// Reads a listed tool afresh from its file; the old object is deleted. Borrowed; null on
  /// failure, when the old one stays.
  tdbTool* RefreshTool(const std::string& code);
  /// @}

  /// Source 1: deletes the listed tools and, with `also_files`, their files; a file that cannot
  /// be deleted is reported. Any other source: deletes every file of the folder, whatever it is.
  void RemoveAllTools(bool also_files, int source);
  /// Does nothing.
  void RemoveTempTools();
  /// Writes the tools of the folder, selected by `codes` (empty: all), into the folder
  /// target/name, where `target` must exist. A tool that stands there already is kept and reported
  /// with 19. False when one could not be written; the others are.
  bool Export(std::string target, std::string name, const std::vector<std::string>& codes);
  /// The same, but only tools whose code is in `loaded` too.
  bool ExportOnlyLoaded(std::string target, std::string name, const std::vector<std::string>& codes,
                        const std::vector<std::string>& loaded);

  /// @name Library components
  /// @{
  /// Ties this database to the components that its tools use; `db` is borrowed and must live
  /// until another is linked or this database is destroyed. Null does nothing.
  void LinkToolComponents(tdbToolComponentsDB* db);
  /// Gives a use of a component the members of the library component of its code; error 21 when
  /// there is none.
  void LoadToolComponent(tdbToolComponent* component);
  void UpdateToolComponents();
  /// Removes every use of a component from the tools of `db`, a `tdbToolDB*`.
  static void BeforeDeleteComponent(void* db, tdbToolComponent* component);
  tdbToolComponentsDB* GetToolComponentDB() const;
  /// @}

  /// @name Callbacks
  /// @{
  void SetAllowToolCallback(AllowToolCallback callback);
  bool AllowTool(tdbTool* tool);
  void SetErrorCallback(ErrorCallback callback, void* user);
  void SetLogCallback(LogCallback callback, void* user);
  void Error(int code, const std::string& text) const;
  void Error(tdbError* error) const;
  void Log(const std::string& message);
  /// @}

  bool IsModified() const { return tdbObject::IsModified(); }
  void SetModifiedFlag(bool modified) { SetModified(modified); }
  void SetFolderPath(const char* path);
  const std::string& GetFolderPath() const;
  tdbFileManager* GetFileManager();
  void Deprecated_SetPath(const char* path);
  const std::string& Deprecated_GetTdbPath() const;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};
