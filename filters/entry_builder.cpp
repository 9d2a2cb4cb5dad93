#include "filters/entry_builder.h"

#include <utility>

#include "filters/plain_text.h"
#include "tooldb/util.h"

namespace tooldb {
namespace {

/// Longest file name, without its extension, that a code may give; room is left for the marks that
/// clones and temporary files add.
constexpr std::size_t kMaxFileName = 200;

std::string_view fitting_code(std::string_view code) {
  code = trimmed_text(at_most(code, kMaxFileName));  // a file name is no shorter than its code
  while (tdbUtil::encoding_code(std::string(code)).size() > kMaxFileName) {
    code = trimmed_text(at_most(code, code.size() - 1));
  }
  return code;
}

}  // namespace

EntryBuilder::EntryBuilder(std::string source, LengthUnit unit) : unit_(unit) {
  entry_.source = std::move(source);
  entry_.tool = std::make_unique<tdbTool>(std::string());
  entry_.tool->SetUnitOfMeasurement(static_cast<int>(unit));
}

std::string EntryBuilder::Storable(std::string_view text) {
  marks_replaced_ = marks_replaced_ || has_marks(text);
  return storable_text(text);
}

void EntryBuilder::SetCode(std::string_view code) {
  marks_replaced_ = marks_replaced_ || has_marks(code);
  const std::string whole = storable_line(code);
  const std::string fitting(fitting_code(whole));
  if (fitting.size() < whole.size()) {
    Note(NoteKind::kApproximated, "the code \"" + whole + "\" is too long for a file name; cut");
  }
  Tool().SetCode(fitting);
}

void EntryBuilder::SetDescription(std::string_view text) {
  marks_replaced_ = marks_replaced_ || has_marks(text);
  Tool().SetDescr(storable_line(text).c_str());
}

void EntryBuilder::SetComment(std::string_view text) { Tool().SetComment(Storable(text).c_str()); }

void EntryBuilder::SetKind(ToolKind kind) {
  Tool().SetType(static_cast<int>(kind));
  Tool().SetSubType(kind == ToolKind::kFaceMill ? static_cast<int>(kind) : 0);
}

void EntryBuilder::Keep(const std::string& name, std::string_view value) {
  marks_replaced_ = marks_replaced_ || has_marks(name);
  const std::string storable_name = storable_line(name);
  Tool().AddParam(storable_name.c_str(), Storable(value).c_str());
  append_to_list(kept_, storable_name);
}

void EntryBuilder::Mapped(std::string_view name) { append_to_list(mapped_, name); }

void EntryBuilder::Note(NoteKind kind, std::string text) {
  entry_.notes.push_back({kind, std::move(text)});
}

void EntryBuilder::AddCuttingTool(std::unique_ptr<tdbCuttingTool> cutting_tool,
                                  const CutterPlan& plan, double length) {
  for (const std::string& remark : plan.remarks) Note(NoteKind::kApproximated, remark);
  is_redrawn_ = !plan.remarks.empty();
  type_name_ = cutting_tool->GetTypeName();
  AddAt(std::move(cutting_tool), -length);
}

void EntryBuilder::AddAt(std::unique_ptr<tdbItem> item, double z) {
  item->SetPos(raised(z + 0.0));  // never -0
  Tool().AddItem(item.release());
}

ImportEntry EntryBuilder::Finish() {
  Tool().SetName(Tool().GetCode());
  Tool().Update();
  if (!type_name_.empty() || !mapped_.empty()) {
    Note(NoteKind::kMapped, (type_name_.empty() ? "" : "as " + type_name_ + ": ") + mapped_);
  }
  if (!kept_.empty()) Note(NoteKind::kKept, "as parameters: " + kept_);
  if (marks_replaced_) {
    Note(NoteKind::kApproximated,
         "tool files cannot hold <, & and \" in texts; their full-width forms stand for them");
  }
  return std::move(entry_);
}

}  // namespace tooldb
