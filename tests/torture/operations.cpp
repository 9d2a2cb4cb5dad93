#include "operations.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>
#include <stdexcept>

#include "tooldb/tooldb.h"

namespace torture {
namespace {

namespace fs = std::filesystem;

std::string old_code(int i) { return "T" + std::to_string(100 + i); }
std::string new_code(int i) { return "R" + std::to_string(100 + i); }

/// A tool of some kilobytes, so that a write can be cut in the middle.
std::unique_ptr<tdbTool> make_tool(const std::string& code, int i, int revision) {
  auto tool = std::make_unique<tdbTool>(code, "Tool " + std::to_string(i));
  const std::string mark = "revision " + std::to_string(revision) + " of " + std::to_string(i);
  tool->SetDescr(mark.c_str());
  for (int p = 0; p < 120; ++p) {
    tool->AddParam(("P" + std::to_string(p)).c_str(), mark.c_str());
  }
  return tool;
}

std::string text_of(int i, int revision) {
  std::string text;
  make_tool(old_code(i), i, revision)->WriteXml(text, {});
  return text;
}

void require(bool done, const char* what) {
  if (!done) throw std::runtime_error(std::string(what) + " failed");
}

void add(tdbToolDB& db, std::unique_ptr<tdbTool> tool, bool replace) {
  require(db.AddTool(tool.get(), replace), "AddTool");
  static_cast<void>(tool.release());
}

/// A database that notes whether it reported an error: a change whose folder could not be flushed
/// stands, but is not stored for good.
class Database : public tdbToolDB {
 public:
  Database() : tdbToolDB("torture", 0) {
    SetErrorCallback(
        [](void* user, const tdbToolDB*, tdbError*) {
          static_cast<Database*>(user)->has_reported_ = true;
          return 0;
        },
        this);
  }
  bool HasReported() const { return has_reported_; }

 private:
  bool has_reported_ = false;
};

std::unique_ptr<Database> open_folder(const fs::path& folder) {
  auto db = std::make_unique<Database>();
  require(db->Init(folder.string()) && db->Read(), "opening the folder");
  return db;
}

using Step = void (*)(tdbToolDB& db, int i);

void each(const fs::path& folder, int count, const Acknowledge& acknowledge, Step step) {
  const auto db = open_folder(folder);
  for (int i = 0; i < count; ++i) {
    step(*db, i);
    require(!db->HasReported(), "storing for good");
    acknowledge(i + 1);
  }
}

void act_add(const fs::path& folder, int count, const Acknowledge& acknowledge) {
  each(folder, count, acknowledge,
       [](tdbToolDB& db, int i) { add(db, make_tool(old_code(i), i, 1), false); });
}

void act_replace(const fs::path& folder, int count, const Acknowledge& acknowledge) {
  each(folder, count, acknowledge,
       [](tdbToolDB& db, int i) { add(db, make_tool(old_code(i), i, 1), true); });
}

void act_update(const fs::path& folder, int count, const Acknowledge& acknowledge) {
  each(folder, count, acknowledge, [](tdbToolDB& db, int i) {
    tdbTool* tool = db.GetToolByCode(old_code(i), 1);
    *tool = *make_tool(old_code(i), i, 1);
    require(db.UpdateTool(tool), "UpdateTool");
  });
}

void act_rename(const fs::path& folder, int count, const Acknowledge& acknowledge) {
  each(folder, count, acknowledge, [](tdbToolDB& db, int i) {
    tdbTool* tool = db.GetToolByCode(old_code(i), 1);
    *tool = *make_tool(new_code(i), i, 1);
    require(db.RenameTool(old_code(i), tool), "RenameTool");
  });
}

void act_remove(const fs::path& folder, int count, const Acknowledge& acknowledge) {
  each(folder, count, acknowledge, [](tdbToolDB& db, int i) {
    tdbTool* const tool = db.GetToolByCode(old_code(i), 1);
    require(db.RemoveTool(tool), "RemoveTool");
    delete tool;
  });
}

void act_import(const fs::path& folder, int count, const Acknowledge& acknowledge) {
  const auto db = open_folder(folder);
  tdbToolDB source("source", 1);
  for (int i = 0; i < count; ++i) add(source, make_tool(old_code(i), i, 1), false);
  require(db->Import(&source) && !db->HasReported(), "Import");
  acknowledge(count);
}

constexpr std::string_view kExported = "exported";

void act_export(const fs::path& folder, int count, const Acknowledge& acknowledge) {
  const auto db = open_folder(folder);
  require(db->Export(folder.string(), std::string(kExported), {}) && !db->HasReported(), "Export");
  acknowledge(count);
}

Stored not_stored(int /*i*/) { return Stored::kNot; }
Stored stored(int /*i*/) { return Stored::kOldText; }
Stored every_other_stored(int i) { return i % 2 == 0 ? Stored::kOldText : Stored::kNot; }

std::string read_file(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

void note(Faults& faults, int Faults::*kind, const std::string& words) {
  if (faults.Total() == 0) faults.first = words;
  ++(faults.*kind);
}

/// Which of its texts a file holds; nothing when it is torn.
bool text_matches(const std::string& text, int i, bool* is_new) {
  *is_new = text == text_of(i, 1);
  return *is_new || text == text_of(i, 0);
}

Stored look_at(const fs::path& folder, int i, Faults& faults) {
  Stored found = Stored::kNot;
  int copies = 0;
  for (const bool renamed : {false, true}) {
    const fs::path path = folder / ((renamed ? new_code(i) : old_code(i)) + ".ktf");
    if (!fs::exists(path)) continue;
    ++copies;
    bool is_new = false;
    if (!text_matches(read_file(path), i, &is_new)) {
      note(faults, &Faults::half_written, path.string() + " is half written");
    }
    found = renamed ? (is_new ? Stored::kRenamedNewText : Stored::kRenamedOldText)
                    : (is_new ? Stored::kNewText : Stored::kOldText);
  }
  if (copies > 1) note(faults, &Faults::doubled, old_code(i) + " is stored twice");
  return found;
}

/// A fresh database lists what lies on the disk, and nothing but tools lies there.
void compare_list(const fs::path& folder, Faults& faults) {
  if (!fs::exists(folder)) return;
  tdbToolDB db("verify", 0);
  int errors = 0;
  db.SetErrorCallback(
      [](void* user, const tdbToolDB*, tdbError*) { return ++*static_cast<int*>(user); }, &errors);
  if (!db.Init(folder.string()) || !db.Read() || errors != 0) {
    note(faults, &Faults::listed, folder.string() + " cannot be read whole");
  }
  int files = 0;
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (!entry.is_regular_file()) continue;
    if (entry.path().extension() == ".ktf") {
      ++files;
    } else {
      note(faults, &Faults::listed, entry.path().string() + " is left over");
    }
  }
  if (files != db.GetToolCount(1)) note(faults, &Faults::listed, "list and disk disagree");
}

}  // namespace

const std::vector<Operation>& operations() {
  static const std::vector<Operation> kOperations{
      {"AddTool-new", not_stored, Stored::kNewText, Stored::kNewText, act_add, false, ""},
      {"AddTool-replacing", stored, Stored::kNewText, Stored::kNewText, act_replace, false, ""},
      {"UpdateTool", stored, Stored::kNewText, Stored::kNewText, act_update, false, ""},
      {"RenameTool", stored, Stored::kRenamedNewText, Stored::kRenamedOldText, act_rename, false,
       ""},
      {"RemoveTool", stored, Stored::kNot, Stored::kNot, act_remove, false, ""},
      {"Import", every_other_stored, Stored::kNewText, Stored::kNewText, act_import, true, ""},
      {"Export", stored, Stored::kOldText, Stored::kNot, act_export, true, kExported},
  };
  return kOperations;
}

const Operation* find_operation(std::string_view name) {
  const auto found = std::ranges::find(operations(), name, &Operation::name);
  return found == operations().end() ? nullptr : &*found;
}

Faults& Faults::operator+=(const Faults& other) {
  if (Total() == 0) first = other.first;
  half_written += other.half_written;
  lost += other.lost;
  doubled += other.doubled;
  missing += other.missing;
  listed += other.listed;
  return *this;
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

Faults verify(const Operation& operation, const fs::path& folder, int count, int acknowledged) {
  Faults faults;
  const fs::path target = operation.target.empty() ? folder : folder / operation.target;
  compare_list(target, faults);
  for (int i = 0; i < count; ++i) {
    const Stored found = look_at(target, i, faults);
    const bool done = i < acknowledged;
    const std::string code = old_code(i);
    if (done && found != operation.after) {
      note(faults, &Faults::missing, code + " was reported done and is not");
    } else if (!done && found != operation.after && found != operation.between &&
               found != (operation.target.empty() ? operation.before(i) : Stored::kNot)) {
      note(faults, &Faults::lost, code + " is not as it was and not as it should become");
    }
  }
  if (!operation.target.empty()) {  // the source of an export stays as it is
    compare_list(folder, faults);
    for (int i = 0; i < count; ++i) {
      if (look_at(folder, i, faults) != operation.before(i)) {
        note(faults, &Faults::lost, old_code(i) + " changed in the source");
      }
    }
  }
  return faults;
}

}  // namespace torture
