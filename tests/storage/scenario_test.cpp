// Runs tests/data/scenarios/databases.txt: what the hosts of both databases do, a step a line, and
// below it, indented, what they hear and are answered.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <sstream>

#include "geom/euler_angles.h"
#include "tests/geom/row_name.h"
#include "tests/storage/watched_database.h"
#include "tooldb/model/tree_walk.h"

namespace tooldb {
namespace {

using Words = std::vector<std::string>;

// The two databases under one set of names. An item's text is what tells it from others of its
// code: the description of a tool, the name of a component's holder.
std::string text_of(const tdbTool& tool) { return tool.GetDescr(); }
std::string text_of(const tdbToolComponent& component) { return component.GetItem(0)->GetName(); }
void set_text(tdbTool& tool, const std::string& text) { tool.SetDescr(text.c_str()); }
void set_text(tdbToolComponent& component, const std::string& text) {
  component.GetItem(0)->SetName(text);
}

int count(tdbToolDB& db, int source) { return db.GetToolCount(source); }
int count(tdbToolComponentsDB& db, int source) { return db.GetCount(source); }
tdbTool* item_at(tdbToolDB& db, int i, int source) { return db.GetTool(i, source); }
tdbToolComponent* item_at(tdbToolComponentsDB& db, int i, int source) {
  return db.GetToolComponent(i, source);
}
tdbTool* find(tdbToolDB& db, const std::string& code, int source) {
  return db.GetToolByCode(code, source);
}
tdbToolComponent* find(tdbToolComponentsDB& db, const std::string& code, int source) {
  return db.GetToolComponentByCode(code, source);
}
void clear(tdbToolDB& db, bool files, int source) { db.RemoveAllTools(files, source); }
void clear(tdbToolComponentsDB& db, bool files, int source) {
  db.RemoveAllToolComponents(files, source);
}

/// For what has no answer.
bool done(const std::function<void()>& call) {
  call();
  return true;
}

/// A step with what follows its verb; "~" stands for a blank, "^" for a line feed, "nil" for an
/// empty word.
struct Step {
  explicit Step(std::istringstream words) {
    for (std::string word; words >> word;) {
      std::replace(word.begin(), word.end(), '~', ' ');
      std::replace(word.begin(), word.end(), '^', '\n');
      all.push_back(word == "nil" ? "" : word);
    }
  }
  std::string operator[](std::size_t i) const { return i < all.size() ? all[i] : ""; }
  Words From(std::size_t i) const { return Words(all.begin() + static_cast<int>(i), all.end()); }

  Words all;
};

std::string replaced(std::string text, std::string_view from, std::string_view to) {
  const auto at = text.find(from);
  return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

template <class Database, auto kMake>
class Session {
  using Owned = decltype(kMake("", ""));
  using Item = typename Owned::element_type;
  static constexpr bool kHasTools = std::is_same_v<Item, tdbTool>;
  static constexpr std::string_view kExtension = kHasTools ? ".ktf" : ".ktcf";

 public:
  Session() {
    if constexpr (kHasTools) db_.LinkToolComponents(&components_);
  }

  /// What a step is answered, a line each, indented.
  std::string Answer(const Step& step) {
    db_.Forget();
    told_.clear();
    const auto verb = Verbs().find(step[0]);
    if (verb == Verbs().end()) return "  no such step\n";
    if (!verb->second(*this, step)) told_ += "false\n";
    if (!hears_log_) {
      std::erase_if(db_.events, [](const auto& event) { return event.starts_with("log: "); });
    }
    std::istringstream lines(db_.Told(scratch_) + told_);
    std::string answer;
    for (std::string line; std::getline(lines, line);) {
      answer += "  " + replaced(line, kExtension, ".ktf") + '\n';
    }
    return answer;
  }

 private:
  using Verb = bool (*)(Session& s, const Step& w);

  static const std::map<std::string, Verb>& Verbs() {
    static const std::map<std::string, Verb> kVerbs = [] {
      std::map<std::string, Verb> verbs = {
          {"hear", [](auto& s, auto&) { return s.hears_log_ = true; }},
          {"to-memory", [](auto& s, auto&) { return done([&] { s.db_.SetFlags(1); }); }},
          {"to-disk", [](auto& s, auto&) { return done([&] { s.db_.SetFlags(0); }); }},
          {"create",
           [](auto& s, auto& w) { return s.db_.Create(w[1].empty() ? "" : s.Path(w[1])); }},
          {"init", [](auto& s, auto& w) { return s.db_.Init(s.Path(w[1])); }},
          {"read", [](auto& s, auto&) { return s.db_.Read(); }},
          {"reload", [](auto& s, auto& w) { return s.db_.Reload(w.From(1)); }},
          {"import-file",
           [](auto& s, auto& w) { return s.db_.ImportFromFile(s.Path(w[1]).c_str(), w.From(2)); }},
          {"import-text",
           [](auto& s, auto& w) {
             return s.db_.ImportFromXml(s.scratch_.Files()[w[1]].c_str(), w.From(2));
           }},
          {"import-nothing", [](auto& s, auto&) { return s.db_.ImportFromFile(nullptr, {}); }},
          {"import-no-text", [](auto& s, auto&) { return s.db_.ImportFromXml(nullptr, {}); }},
          {"write-export", [](auto& s, auto& w) { return s.WriteExport(w[1]); }},
          {"export", [](auto& s, auto& w) { return s.db_.Export(s.Path(w[1]), w[2], w.From(3)); }},
          {"add", [](auto& s, auto& w) { return s.Add(kMake(w[1], w[2]), true); }},
          {"add-new", [](auto& s, auto& w) { return s.Add(kMake(w[1], w[2]), false); }},
          {"add-again", [](auto& s, auto& w) { return s.db_.AddTool(&s.Listed(w[1]), true); }},
          {"add-nothing", [](auto& s, auto&) { return s.db_.AddTool(nullptr, true); }},
          {"update", [](auto& s, auto& w) { return s.db_.UpdateTool(&s.Listed(w[1])); }},
          {"remove", [](auto& s, auto& w) { return s.Remove(s.Listed(w[1])); }},
          {"forget-all", [](auto& s, auto&) { return done([&] { clear(s.db_, false, 1); }); }},
          {"remove-all", [](auto& s, auto&) { return done([&] { clear(s.db_, true, 1); }); }},
          {"remove-files", [](auto& s, auto&) { return done([&] { clear(s.db_, true, 2); }); }},
          {"change",
           [](auto& s, auto& w) { return done([&] { set_text(s.Listed(w[1]), w[2]); }); }},
          {"is-stored", [](auto& s, auto& w) { return s.db_.IsToolCodeExists(w[1]); }},
          {"is-readable", [](auto& s, auto& w) { return Owned(find(s.db_, w[1], 2)) != nullptr; }},
          {"sort",
           [](auto& s, auto& w) {
             return done([&] { s.db_.Sort(std::stoi(w[1]), w[2].empty()); });
           }},
          {"list", [](auto& s, auto&) { return s.Tell(1); }},
          {"folder", [](auto& s, auto&) { return s.Tell(2); }},
          {"files", [](auto& s, auto& w) { return s.TellFiles(w[1]); }},
          {"make-file", [](auto& s, auto& w) { return s.MakeFile(w[1], w[2]); }},
          {"copy-file",
           [](auto& s, auto& w) { return std::filesystem::copy_file(s.Path(w[1]), s.Path(w[2])); }},
          {"delete",
           [](auto& s, auto& w) { return std::filesystem::remove_all(s.Path(w[1])) > 0; }},
      };
      if constexpr (kHasTools) {
        verbs.insert({
            {"rename", [](auto& s, auto& w) { return s.Rename(w[1], w[2]); }},
            {"clone", [](auto& s, auto& w) { return s.Clone(w[1]); }},
            {"refresh", [](auto& s, auto& w) { return s.db_.RefreshTool(w[1]) != nullptr; }},
            {"component", [](auto& s, auto& w) { return s.PutComponent(w[1], w[2]); }},
            {"drop-component",
             [](auto& s, auto& w) { return s.components_.RemoveToolComponentByCode(w[1]); }},
            {"use", [](auto& s, auto& w) { return s.Use(s.Listed(w[1]), w[2]); }},
            {"hang", [](auto& s, auto& w) { return s.Hang(s.Listed(w[1]), w[2]); }},
            {"update-uses",
             [](auto& s, auto&) { return done([&] { s.db_.UpdateToolComponents(); }); }},
            {"tree", [](auto& s, auto& w) { return s.TellTree(s.Listed(w[1])); }},
            {"order", [](auto& s, auto& w) { return s.TellOrder(w[1], w[2]); }},
            {"import-self", [](auto& s, auto&) { return s.db_.Import(&s.db_); }},
            {"import-no-tools", [](auto& s, auto&) { return s.db_.Import(nullptr); }},
            {"import", [](auto& s, auto& w) { return s.Import(w.From(1)); }},
            {"export-loaded", [](auto& s, auto& w) { return s.ExportLoaded(w); }},
        });
      } else {
        verbs.insert({
            {"remove-code", [](auto& s, auto& w) { return s.db_.RemoveToolComponentByCode(w[1]); }},
            {"hear-removals", [](auto& s, auto&) { return s.HearRemovals(); }},
        });
      }
      return verbs;
    }();
    return kVerbs;
  }

  std::string Path(const std::string& name) const {
    return scratch_.Path(replaced(name, ".ktf", kExtension));
  }

  Item& Listed(const std::string& code) {
    Item* const item = find(db_, code, 1);
    if (item == nullptr) throw std::runtime_error(code + " is not listed");
    return *item;
  }

  bool MakeFile(const std::string& name, const std::string& text) const {
    return !(std::ofstream(Path(name), std::ios::binary) << text).fail();
  }

  bool HearRemovals() {
    db_.SetBeforeDeleteCallback(
        [](void* user, tdbToolComponent* component) {
          auto& s = *static_cast<Session*>(user);
          const bool listed = find(s.db_, component->GetCode(), 1) == component;
          s.told_ += "removes " + component->GetCode() + (listed ? "\n" : " too late\n");
        },
        this);
    return true;
  }

  bool Add(Owned item, bool replace) {
    const bool added = db_.AddTool(item.get(), replace);
    if (added) static_cast<void>(item.release());
    return added;
  }

  bool Remove(Item& item) {
    const bool removed = db_.RemoveTool(&item);
    if (removed) delete &item;
    return removed;
  }

  bool Rename(const std::string& from, const std::string& to) {
    Item& item = Listed(from);
    item.SetCode(to);
    const bool renamed = db_.RenameTool(from, &item);
    if (!renamed) item.SetCode(from);
    return renamed;
  }

  bool Clone(const std::string& code) {
    tdbError error;
    return db_.Noted(db_.CloneTool(&Listed(code), error), error);
  }

  bool Import(const Words& codes) {
    WatchedTools other(1);
    for (const std::string& code : codes) add_tool(other, code, "imported");
    const bool done = db_.Import(&other);
    EXPECT_EQ(listed_codes(other), codes) << "copies were added";
    return done;
  }

  bool WriteExport(const std::string& name) {
    std::string text;
    db_.WriteXml(text, {});
    return MakeFile(name, text);
  }

  /// Name, codes, "/", codes.
  bool ExportLoaded(const Step& w) {
    const auto slash = std::find(w.all.begin(), w.all.end(), "/");
    return db_.ExportOnlyLoaded(Path(""), w[1], Words(w.all.begin() + 2, slash),
                                Words(slash + 1, w.all.end()));
  }

  /// A component of one holder, 10 above it.
  bool PutComponent(const std::string& code, const std::string& holder) {
    tdbToolComponent* const component = add_component(components_, code, holder);
    component->GetItem(0)->SetPos(join_zyx({}, {0, 0, 10}));
    return true;
  }

  /// Adds a use of a component to a tool, 100 above it.
  bool Use(tdbTool& tool, const std::string& code) {
    auto* const use = new tdbToolComponent(0, "use", code);
    use->SetPos(join_zyx({}, {0, 0, 100}));
    tool.AddItem(use);
    db_.LoadToolComponent(use);
    return true;
  }

  /// Hangs a cutter on the first holder of a tool, 1 above it, or a use of a component.
  bool Hang(tdbTool& tool, const std::string& code) {
    std::unique_ptr<tdbItem> item = std::make_unique<tdbToolCutter>(0);
    if (!code.empty()) item = std::make_unique<tdbToolComponent>(0, "inner", code);
    if (code.empty()) item->SetName("cutter");
    item->SetPos(join_zyx({}, {0, 0, 1}));
    return tool.GetHolder(0)->AddItem(item.release());
  }

  bool TellTree(tdbTool& tool) {
    for (const tdbItem* item : items_below(tool)) {
      told_ += item->GetName() + " on " + item->GetParent()->GetName() + " at " +
               std::to_string(static_cast<int>(item->GetPos()(2, 3))) +
               (item->IsComponent() ? ", a member\n" : "\n");
    }
    for (const tdbError& error : tool.GetErrs()) told_ += error.message + '\n';
    return true;
  }

  /// Every item as code=text, by position, which all ways to ask agree on.
  bool Tell(int source) {
    std::vector<Item> items;
    db_.GetTools(items, source);
    const int size = static_cast<int>(items.size());
    EXPECT_EQ(count(db_, source), size);
    for (int i = -1; i <= size; ++i) {
      Item* const item = item_at(db_, i, source);
      const Owned stored(source == 2 ? item : nullptr);
      EXPECT_EQ(item != nullptr, 0 <= i && i < size);
      if (item == nullptr) continue;
      EXPECT_EQ(*item, items[static_cast<std::size_t>(i)]);
      told_ += item->GetCode() + '=' + text_of(*item) + '\n';
    }
    return true;
  }

  /// Which of two codes comes first, whichever is added first.
  bool TellOrder(const std::string& one, const std::string& other) {
    Words fronts;
    for (const auto& codes : {Words{one, other}, Words{other, one}}) {
      tdbToolDB db("", 1);
      for (const std::string& code : codes) db.AddTool(make_tool(code).release(), false);
      db.Sort(0, true);
      fronts.push_back(listed_codes(db).front());
    }
    told_ += fronts[0] == fronts[1] ? fronts[0] + '\n' : "neither\n";
    return true;
  }

  bool TellFiles(const std::string& below) {
    for (const auto& [name, bytes] : scratch_.Files(below)) told_ += name + '\n';
    return true;
  }

  ScratchFolder scratch_;
  WatchedComponents components_{1};
  Database db_;
  bool hears_log_ = false;
  std::string told_;
};

/// A part of the file, from "== Name: for what" on.
struct Scenario {
  std::string name;
  std::string databases;
  std::string transcript;
};

std::vector<Scenario> scenarios() {
  std::ifstream file(TOOLDB_TEST_DATA "/scenarios/databases.txt");
  std::vector<Scenario> all;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("== ")) {
      const auto colon = line.find(": ");
      all.push_back({line.substr(3, colon - 3), line.substr(colon + 2), ""});
    } else if (!line.empty()) {
      all.back().transcript += line + '\n';
    }
  }
  if (all.empty()) throw std::runtime_error("no scenarios");
  return all;
}

class Databases : public testing::TestWithParam<Scenario> {};

TEST_P(Databases, AnswerAsWritten) {
  const auto expect_answers = [](auto session, std::string_view kind) {
    if (GetParam().databases.find(kind) == std::string::npos) return;
    std::string answers;
    std::istringstream lines(GetParam().transcript);
    for (std::string line; std::getline(lines, line);) {
      if (line.starts_with("  ")) continue;
      answers += line + '\n' + session.Answer(Step(std::istringstream(line)));
    }
    EXPECT_EQ(answers, GetParam().transcript) << kind;
  };
  expect_answers(Session<WatchedTools, make_tool>(), "tools");
  expect_answers(Session<WatchedComponents, make_component>(), "components");
}

INSTANTIATE_TEST_SUITE_P(Scenarios, Databases, testing::ValuesIn(scenarios()), row_name<Scenario>);

}  // namespace
}  // namespace tooldb
