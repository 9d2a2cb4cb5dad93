#include "apps/intake.h"

#include <algorithm>
#include <filesystem>
#include <map>

#include "apps/command.h"
#include "apps/console.h"
#include "apps/folder_index.h"
#include "apps/progress.h"
#include "apps/text_rules.h"
#include "apps/tool_folder.h"
#include "apps/tree_items.h"
#include "filters/plain_text.h"

namespace tooldb {
namespace {

std::string file_name_of(const std::string& path) {
  return std::filesystem::path(path).filename().string();
}

// What names an entry within its file.
std::string source_within(const std::string& source, const SourceFile& file) {
  const std::string prefix = file_name_of(file.path) + ": ";
  return source.starts_with(prefix) ? source.substr(prefix.size()) : source;
}

bool has_failed(const ImportResult& result) {
  return std::ranges::any_of(result.notes,
                             [](const ImportNote& note) { return note.kind == NoteKind::kFailed; });
}

class Taker {
 public:
  Taker(ToolFolder& folder, const IntakePolicy& policy)
      : folder_(folder), policy_(policy), index_(folder) {}

  void TakeComponents(SourceFile& source, IntakeFile& report) {
    for (ImportEntry& entry : source.result.entries) {
      if (entry.component == nullptr) continue;
      IntakeLine& line = AddLine(source, report, entry, true);
      Guarded(line, [&] { TakeComponent(source, entry, line); });
      entry.component.reset();
    }
  }

  void TakeTools(SourceFile& source, IntakeFile& report) {
    for (ImportEntry& entry : source.result.entries) {
      if (entry.tool == nullptr) continue;
      IntakeLine& line = AddLine(source, report, entry, false);
      Guarded(line, [&] { TakeTool(source, entry, line); });
    }
    if (source.kind == SourceKind::kForeign && !has_failed(source.result)) {
      report.missing = index_.NotMet(storable_text(file_name_of(source.path)));
    }
  }

 private:
  static IntakeLine& AddLine(const SourceFile& source, IntakeFile& report, ImportEntry& entry,
                             bool is_component) {
    const std::string& code = is_component ? entry.component->GetCode() : entry.tool->GetCode();
    return report.lines.emplace_back(IntakeLine{
        Outcome::kRefused, is_component, code, is_component ? "" : entry.tool->GetDescr(),
        source_within(entry.source, source), "", std::move(entry.notes)});
  }

  template <class F>
  static void Guarded(IntakeLine& line, F&& take) {
    try {
      take();
    } catch (const Failure& failure) {
      line.outcome = Outcome::kRefused;
      line.reason = failure.what();
    }
  }

  void PrepareTexts(tdbCompositeItem& item, IntakeLine& line) const {
    if (policy_.rewrite_texts) {
      for (auto& change : make_storable(item)) {
        line.notes.push_back({NoteKind::kApproximated, std::move(change)});
      }
    }
    require_storable(item);
  }

  // The outcome for an entry that the folder has already.
  Outcome Compare(const FolderIndex::Known& known, const std::string& text,
                  IntakeLine& line) const {
    if (known.text == text) return Outcome::kSame;
    if (policy_.update) return Outcome::kUpdated;
    if (policy_.own_only) throw Failure("there is one of this code already; --replace takes this");
    line.reason = "the folder's is kept; --update takes the file's";
    return Outcome::kChanged;
  }

  void TakeTool(const SourceFile& source, ImportEntry& entry, IntakeLine& line) {
    tdbTool& tool = *entry.tool;
    UseRenamedComponents(source, tool);
    const std::string guid = storable_text(entry.guid);  // as the folder has it
    if (source.kind == SourceKind::kForeign) {
      if (!guid.empty()) tool.AddParam(kGuidParameter, guid.c_str());
      tool.AddParam(kFileParameter, file_name_of(source.path).c_str());
    }
    PrepareTexts(tool, line);
    NoteReadErrors(tool, line);
    tool.SetModified(true);
    tool.Update();
    FolderIndex::Known* known = index_.FindTool(tool.GetCode(), guid);
    if (known != nullptr) {
      TakeKnownTool(*known, tool, line);
    } else {
      TakeNewTool(source, std::move(entry.tool), line);
    }
  }

  void TakeKnownTool(FolderIndex::Known& known, tdbTool& tool, IntakeLine& line) {
    known.met = true;
    line.code = known.code;
    tool.SetCode(known.code);
    line.outcome = Compare(known, index_.TextOf(tool), line);
    if (line.outcome != Outcome::kUpdated || policy_.dry_run) return;
    if (!index_.IsUnchanged(known)) {
      throw Failure(folder_.FilePath(known.code) + ": the file was changed since it was read");
    }
    folder_.Update(tool);
    index_.AddTool(tool);
  }

  void TakeNewTool(const SourceFile& source, std::unique_ptr<tdbTool> tool, IntakeLine& line) {
    const std::string code = tool->GetCode();
    if (index_.HasTool(code)) {
      if (source.kind != SourceKind::kForeign) {
        throw Failure("another tool has this code but for the case of letters");
      }
      tool->SetCode(free_code(code, [&](const std::string& c) { return index_.HasTool(c); }));
      line.reason = "the code '" + code + "' is another tool's";
    }
    line.code = tool->GetCode();
    line.outcome = Outcome::kNew;
    tdbTool& added = *tool;  // the folder's database keeps it
    if (!policy_.dry_run) folder_.AddNew(std::move(tool));
    index_.AddTool(added).met = true;
  }

  // Components of other programs have made-up codes: one whose code is taken by another content
  // gets the next free one, and the tools of its file follow.
  void TakeComponent(const SourceFile& source, ImportEntry& entry, IntakeLine& line) {
    tdbToolComponent& component = *entry.component;
    const std::string code = component.GetCode();
    PrepareTexts(component, line);
    const std::string text = index_.TextOf(component);
    if (source.kind == SourceKind::kForeign) {
      component.SetCode(CodeForContent(code, text));
      renamed_[{&source, code}] = component.GetCode();
    }
    line.code = component.GetCode();
    const FolderIndex::Known* known = index_.FindComponent(component.GetCode());
    line.outcome = known == nullptr ? Outcome::kNew : Compare(*known, text, line);
    const bool is_written = line.outcome == Outcome::kNew || line.outcome == Outcome::kUpdated;
    if (!is_written) return;
    index_.AddComponent(component);
    if (!policy_.dry_run) folder_.RequireComponents().Write(std::move(entry.component));
  }

  std::string CodeForContent(const std::string& code, const std::string& text) {
    const auto is_taken = [&](const std::string& candidate) {
      const FolderIndex::Known* known = index_.FindComponent(candidate);
      return known != nullptr && known->text != text;
    };
    return is_taken(code) ? free_code(code, is_taken) : code;
  }

  void UseRenamedComponents(const SourceFile& source, tdbTool& tool) const {
    for (const TreeItem& entry : items_below(tool)) {
      if (dynamic_cast<tdbToolComponent*>(entry.item) == nullptr) continue;
      const auto renamed = renamed_.find({&source, entry.item->GetCode()});
      if (renamed != renamed_.end()) entry.item->SetCode(renamed->second);
    }
  }

  // What the reader could not resolve; in a dry run the components are not there to be found.
  void NoteReadErrors(tdbTool& tool, IntakeLine& line) const {
    for (const tdbError& error : tool.GetErrs()) {
      if (policy_.dry_run && error.code == kComponentNotFound) continue;
      line.notes.push_back({NoteKind::kApproximated, error.message});
    }
  }

  ToolFolder& folder_;
  const IntakePolicy& policy_;
  FolderIndex index_;
  std::map<std::pair<const SourceFile*, std::string>, std::string> renamed_;
};

// Entries that gave neither tool nor component.
void add_failed_entries(SourceFile& source, IntakeFile& report) {
  for (ImportEntry& entry : source.result.entries) {
    if (entry.tool != nullptr || entry.component != nullptr) continue;
    const bool is_absent =
        std::ranges::find(entry.notes, NoteKind::kAbsent, &ImportNote::kind) != entry.notes.end();
    const Outcome outcome = is_absent ? Outcome::kAbsent : Outcome::kRefused;
    report.lines.push_back(
        {outcome, false, "", "", source_within(entry.source, source), "", std::move(entry.notes)});
  }
}

void finish_report(SourceFile& source, IntakeFile& report) {
  report.path = source.path;
  report.format = source.result.format;
  report.is_refused = has_failed(source.result);
  report.notes = std::move(source.result.notes);
  for (ImportNote& note : report.notes) note.text = source_within(note.text, source);
}

void refuse_foreign(SourceFile& source) {
  if (source.kind != SourceKind::kForeign) return;
  source.result.entries.clear();
  source.result.notes = {
      {NoteKind::kFailed, "it is another program's file; 'tooldb import' reads it"}};
}

}  // namespace

std::vector<IntakeFile> take_in(std::vector<SourceFile> sources, ToolFolder& folder,
                                const IntakePolicy& policy, Console& console) {
  std::vector<IntakeFile> reports(sources.size());
  Taker taker(folder, policy);
  Progress progress(console, "importing", 2 * sources.size());
  for (SourceFile& source : sources) read_components(source, folder);
  drop_siblings(sources);
  for (std::size_t i = 0; i < sources.size(); ++i) {
    if (policy.own_only) refuse_foreign(sources[i]);
    add_failed_entries(sources[i], reports[i]);
    taker.TakeComponents(sources[i], reports[i]);
    progress.Step();
  }
  for (std::size_t i = 0; i < sources.size(); ++i) {
    read_tools(sources[i], folder);
    taker.TakeTools(sources[i], reports[i]);
    finish_report(sources[i], reports[i]);
    progress.Step();
  }
  return reports;
}

}  // namespace tooldb
