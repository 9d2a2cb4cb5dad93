#include "operations.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "marked_tool.h"
#include "tests/storage/watched_database.h"

namespace torture {
namespace {

namespace fs = std::filesystem;
using Complaints = std::vector<std::string>;

std::string old_code(int i) { return "T" + std::to_string(100 + i); }
std::string new_code(int i) { return "R" + std::to_string(100 + i); }

std::unique_ptr<tdbTool> make_tool(const std::string& code, int i, int revision) {
  return marked_tool(code, "revision " + std::to_string(revision) + " of " + std::to_string(i));
}

std::string text_of(int i, int revision) {
  std::string text;
  make_tool(old_code(i), i, revision)->WriteXml(text, {});
  return text;
}

void require(bool done, const char* what) {
  if (!done) throw std::runtime_error(std::string(what) + " failed");
}

void add(tdbToolDB& db, int i, bool replace) {
  auto tool = make_tool(old_code(i), i, 1);
  require(db.AddTool(tool.get(), replace), "AddTool");
  static_cast<void>(tool.release());
}

tdbTool* listed(tdbToolDB& db, int i) {
  tdbTool* const tool = db.GetToolByCode(old_code(i), 1);
  require(tool != nullptr, "finding a tool");
  return tool;
}

/// The listed tool `i` with its second text, under a code.
tdbTool* changed(tdbToolDB& db, int i, const std::string& code) {
  tdbTool* const tool = listed(db, i);
  *tool = *make_tool(code, i, 1);
  return tool;
}

void update(tdbToolDB& db, int i) {
  require(db.UpdateTool(changed(db, i, old_code(i))), "UpdateTool");
}

void rename(tdbToolDB& db, int i) {
  require(db.RenameTool(old_code(i), changed(db, i, new_code(i))), "RenameTool");
}

void remove(tdbToolDB& db, int i) {
  tdbTool* const tool = listed(db, i);
  require(db.RemoveTool(tool), "RemoveTool");
  delete tool;
}

void import(tdbToolDB& db, int count) {
  tdbToolDB source("source", 1);
  for (int i = 0; i < count; ++i) add(source, i, false);
  require(db.Import(&source), "Import");
}

constexpr std::string_view kExported = "exported";

void export_all(tdbToolDB& db, int /*count*/) {
  require(db.Export(db.GetFolderPath(), std::string(kExported), {}), "Export");
}

Stored not_stored(int /*i*/) { return Stored::kNot; }
Stored stored(int /*i*/) { return Stored::kOldText; }
Stored every_other_stored(int i) { return i % 2 == 0 ? Stored::kOldText : Stored::kNot; }

std::string read_file(const fs::path& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

Stored look_at(const fs::path& folder, int i, Complaints& complaints) {
  Stored found = Stored::kNot;
  for (const bool renamed : {false, true}) {
    const fs::path path = folder / ((renamed ? new_code(i) : old_code(i)) + ".ktf");
    if (!fs::exists(path)) continue;
    if (found != Stored::kNot) complaints.push_back(path.string() + " is stored twice");
    const std::string text = read_file(path);
    const bool is_new = text == text_of(i, 1);
    if (!is_new && text != text_of(i, 0)) complaints.push_back(path.string() + " is half written");
    found = renamed ? (is_new ? Stored::kRenamedNewText : Stored::kRenamedOldText)
                    : (is_new ? Stored::kNewText : Stored::kOldText);
  }
  return found;
}

/// A fresh database lists what lies on the disk, and nothing but tools lies there.
void compare_list(const fs::path& folder, Complaints& complaints) {
  if (!fs::exists(folder)) return;
  tooldb::WatchedTools db;
  if (!db.Init(folder.string()) || !db.Read() || db.HasReported()) {
    complaints.push_back(folder.string() + " cannot be read whole");
  }
  int files = 0;
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (!entry.is_regular_file()) continue;
    if (entry.path().extension() == ".ktf") {
      ++files;
    } else {
      complaints.push_back(entry.path().string() + " is left over");
    }
  }
  if (files != db.GetToolCount(1)) complaints.emplace_back("list and disk disagree");
}

}  // namespace

const std::vector<Operation>& operations() {
  static const std::vector<Operation> kOperations{
      {.name = "AddTool-new",
       .before = not_stored,
       .after = Stored::kNewText,
       .change = [](tdbToolDB& db, int i) { add(db, i, false); }},
      {.name = "AddTool-replacing",
       .before = stored,
       .after = Stored::kNewText,
       .change = [](tdbToolDB& db, int i) { add(db, i, true); }},
      {.name = "UpdateTool", .before = stored, .after = Stored::kNewText, .change = update},
      {.name = "RenameTool",
       .before = stored,
       .after = Stored::kRenamedNewText,
       .between = Stored::kRenamedOldText,
       .change = rename},
      {.name = "RemoveTool", .before = stored, .after = Stored::kNot, .change = remove},
      {.name = "Import",
       .before = every_other_stored,
       .after = Stored::kNewText,
       .change_all = import},
      {.name = "Export",
       .before = stored,
       .after = Stored::kOldText,
       .between = Stored::kNot,
       .change_all = export_all,
       .target = kExported},
  };
  return kOperations;
}

const Operation* find_operation(std::string_view name) {
  const auto found = std::ranges::find(operations(), name, &Operation::name);
  return found == operations().end() ? nullptr : &*found;
}

void prepare(const Operation& operation, const fs::path& folder, int count) {
  fs::remove_all(folder);
  fs::create_directories(folder);
  for (int i = 0; i < count; ++i) {
    if (operation.before(i) == Stored::kOldText) {
      std::ofstream(folder / (old_code(i) + ".ktf"), std::ios::binary) << text_of(i, 0);
    }
  }
}

void act(const Operation& operation, const fs::path& folder, int count,
         const std::function<void(int tools)>& acknowledge) {
  tooldb::WatchedTools db;
  require(db.Init(folder.string()) && db.Read(), "opening the folder");
  const bool at_a_stroke = operation.change_all != nullptr;
  for (int done = at_a_stroke ? count : 1; done <= count; ++done) {
    at_a_stroke ? operation.change_all(db, count) : operation.change(db, done - 1);
    // A change whose folder could not be flushed stands, but is not stored for good.
    require(!db.HasReported(), "storing for good");
    acknowledge(done);
  }
}

std::vector<std::string> verify(const Operation& operation, const fs::path& folder, int count,
                                int acknowledged) {
  Complaints complaints;
  const bool beside = !operation.target.empty();
  const fs::path target = beside ? folder / operation.target : folder;
  compare_list(target, complaints);
  if (beside) compare_list(folder, complaints);
  for (int i = 0; i < count; ++i) {
    const std::string code = old_code(i);
    const Stored found = look_at(target, i, complaints);
    const Stored before = beside ? Stored::kNot : operation.before(i);
    if (i < acknowledged && found != operation.after) {
      complaints.push_back(code + " was reported done and is not");
    } else if (found != operation.after && found != operation.between && found != before) {
      complaints.push_back(code + " is not as it was and not as it should become");
    }
    if (beside && look_at(folder, i, complaints) != operation.before(i)) {
      complaints.push_back(code + " changed in the source");
    }
  }
  return complaints;
}

}  // namespace torture
