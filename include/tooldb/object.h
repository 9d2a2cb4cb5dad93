#pragma once

#include <string>
#include <vector>

#include "tooldb/export.h"

namespace tooldb {
class CodeWatcher;
}

/// Base of everything that has a name and a code: items of a tool's tree and the two databases.
///
/// Without memory, constructing, copying and setting raise `std::bad_alloc`, for a text that gets
/// lost would be worse; whatever reads, draws, writes files or works on a database says that it
/// failed, as after any failure.
///
/// The order of the virtual operations here and in the derived classes is part of the binary
/// interface; new ones go to the end.
class TDB_EXPORT tdbObject {
 public:
  tdbObject();
  explicit tdbObject(const std::string& name);
  tdbObject(const std::string& name, const std::string& code);
  tdbObject(const tdbObject& other);
  tdbObject& operator=(const tdbObject& other);
  virtual ~tdbObject();

  virtual void SetName(const std::string& name);
  virtual const std::string& GetName() const;
  virtual const std::string& GetCode() const;
  virtual void SetFlags(long flags);

  /// A deep copy; the caller owns it.
  virtual tdbObject* Clone() const = 0;

  /// Appends the object's XML to `out`. Texts are written as they stand, without escaping: a
  /// quote, "<" or "&" in a name, code or value makes the text unreadable as XML.
  /// @param search_paths  folders against which the paths of model files are made relative
  virtual void WriteXml(std::string& out, const std::vector<std::string>& search_paths) const = 0;

  void SetCode(const std::string& code);

  /// The modified mark: set by the operations that say so, cleared by the databases only.
  bool IsModified() const { return modified_; }
  void SetModified(bool modified) { modified_ = modified; }

  int GetVersion() const { return version_; }
  void SetVersion(int version) { version_ = version; }

  long GetFlags() const { return flags_; }
  /// True when every bit of `flag` is set.
  bool HasFlag(int flag) const { return (flags_ & flag) == flag; }

  /// Codes, versions, names and flags are equal; the modified mark is not compared.
  bool operator==(const tdbObject& other) const;
  bool operator!=(const tdbObject& other) const { return !(*this == other); }

 private:
  friend class tooldb::CodeWatcher;

  std::string name_;
  std::string code_;
  /// The list that the object is in; it outlives its watch.
  tooldb::CodeWatcher* watcher_ = nullptr;
  long flags_ = 0;
  int version_ = 0;
  bool modified_ = false;
};
