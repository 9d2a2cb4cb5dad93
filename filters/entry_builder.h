#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "filters/assembly.h"
#include "filters/import.h"
#include "filters/quantity.h"

namespace tooldb {

/// Kinds of tool, as the type code of a tool tells them.
enum class ToolKind {
  kMill = 0,
  kDrill = 1,
  kProbe = 2,
  kTurning = 3,
  kTap = 5,
  kDisc = 6,
  kFaceMill = 7,
  kBore = 9,
};

/// Fills one tool and the report about it. Every text that goes into the tool is made fit for tool
/// files on the way.
class EntryBuilder {
 public:
  EntryBuilder(std::string source, LengthUnit unit);

  tdbTool& Tool() { return *entry_.tool; }
  LengthUnit Unit() const { return unit_; }

  void SetCode(std::string_view code);
  void SetGuid(std::string_view guid) { entry_.guid = guid; }
  void SetDescription(std::string_view text);
  void SetComment(std::string_view text);
  void SetKind(ToolKind kind);

  /// Keeps a value as a parameter of the tool; it is counted in the report's line of kept values.
  void Keep(const std::string& name, std::string_view value);
  /// A value that has its place; counted in the report's line of mapped values.
  void Mapped(std::string_view name);
  void Note(NoteKind kind, std::string text);

  /// Adds the cutting tool with its tip `length` below the tool's origin.
  void AddCuttingTool(std::unique_ptr<tdbCuttingTool> cutting_tool, const CutterPlan& plan,
                      double length);
  /// True when the cutting tool does not show every number as the file has it: then the file's own
  /// are to be kept too.
  bool IsRedrawn() const { return is_redrawn_; }
  /// Adds a holder or a use of one with its nose `z` above the tool's origin.
  void AddAt(std::unique_ptr<tdbItem> item, double z);

  /// The entry, its tool brought up to date; the builder is empty afterwards.
  ImportEntry Finish();

 private:
  std::string Storable(std::string_view text);

  ImportEntry entry_;
  LengthUnit unit_;
  std::string type_name_;
  std::string mapped_;
  std::string kept_;
  bool marks_replaced_ = false;
  bool is_redrawn_ = false;
};

}  // namespace tooldb
