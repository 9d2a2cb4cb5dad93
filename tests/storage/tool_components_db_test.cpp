#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/geom/row_name.h"
#include "tests/storage/watched_database.h"

namespace tooldb {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Key;

/// A tool database and a components database, linked, each in a folder of its own.
class Components : public testing::Test {
 protected:
  Components() {
    EXPECT_TRUE(tools_.Create(scratch_.Path("tools")));
    EXPECT_TRUE(components_.Create(scratch_.Path("components")));
    tools_.LinkToolComponents(&components_);
    tools_.Forget();
    components_.Forget();
  }

  /// A tool with a use of that component, whose members are loaded.
  tdbToolComponent* AddUse(const std::string& tool_code, const std::string& component_code) {
    tdbTool* tool = add_tool(tools_, tool_code);
    auto* use = new tdbToolComponent(0, "use", component_code);
    tool->AddItem(use);
    tools_.LoadToolComponent(use);
    return use;
  }

  ScratchFolder scratch_;
  WatchedTools tools_;
  WatchedComponents components_;
};

struct LogCase {
  std::string_view name;
  void (*run)(WatchedComponents& db, const ScratchFolder& scratch);
  std::vector<std::string> events;
};

const LogCase kLogs[] = {
    {"Init",
     [](auto& db, auto& scratch) { db.Init(scratch.Path("components")); },
     {"log: Init: @/components"}},
    {"Read",
     [](auto& db, auto&) { db.Read(); },
     {"log: Read tool components folder: @/components", "log: Add toolcomponent: C1"}},
    {"Reload", [](auto& db, auto&) { db.Reload({}); }, {"log: Reload toolcomponents"}},
    {"ImportFromXml",
     [](auto& db, auto&) { db.ImportFromXml("<TOOLDB/>", {}); },
     {"log: Import toolcomponents from xml: <TOOLDB/>"}},
    {"ImportFromFile",
     [](auto& db, auto& scratch) {
       db.ImportFromFile(scratch.MakeFile("x", "<TOOLDB/>").c_str(), {});
     },
     {"log: Import toolcomponents from file: @/x"}},
    {"Export",
     [](auto& db, auto& scratch) { db.Export(scratch.Path(), "copy", {}); },
     {"log: Export toolcomponents to: @"}},
    {"Add", [](auto& db, auto&) { add_component(db, "C2"); }, {"log: AddToolComponent: C2"}},
    {"AddTwice",
     [](auto& db, auto&) { db.AddTool(make_component("C1").get(), false); },
     {"log: AddToolComponent: C1", "error 19: C1"}},
    {"Update",
     [](auto& db, auto&) { db.UpdateTool(db.GetToolComponent(0, 1)); },
     {"log: UpdateToolComponent: C1"}},
    {"Remove",
     [](auto& db, auto&) { db.RemoveToolComponentByCode("C1"); },
     {"log: RemoveToolComponent: C1"}},
    {"RemoveAllWithFiles",
     [](auto& db, auto&) { db.RemoveAllToolComponents(true, 1); },
     {"log: RemoveAllTools(file-and-memory)", "log: RemoveToolComponent: C1"}},
    {"RemoveAll",
     [](auto& db, auto&) { db.RemoveAllToolComponents(false, 1); },
     {"log: RemoveAllTools(only-memory)"}},
};

class ComponentsLog : public Components, public testing::WithParamInterface<LogCase> {};

TEST_P(ComponentsLog, SaysWhatItDoes) {
  add_component(components_, "C1");
  components_.Forget();
  GetParam().run(components_, scratch_);
  std::vector<std::string> expected;
  for (std::string event : GetParam().events) {
    const auto at = event.find('@');
    if (at != std::string::npos) event.replace(at, 1, scratch_.Path());
    expected.push_back(event);
  }
  EXPECT_THAT(components_.events, ElementsAreArray(expected));
}

INSTANTIATE_TEST_SUITE_P(Operations, ComponentsLog, testing::ValuesIn(kLogs), row_name<LogCase>);

/// True when the item and all below it have the component mark.
bool all_marked(tdbItem& item) {
  bool marked = true;
  item.Visit(
      [](void* context, tdbItem* visited) {
        *static_cast<bool*>(context) = *static_cast<bool*>(context) && visited->IsComponent();
      },
      &marked);
  return marked;
}

TEST_F(Components, AreStoredAsDefinitionsAndReadAgain) {
  auto component = make_component("C/1");
  auto* cutting = new tdbCuttingTool(new tdbToolCutter(0), new tdbToolShank(0), 0);
  static_cast<tdbToolHolder*>(component->GetItem(0))->AddItem(cutting);
  component->AddItem(make_component("inner").release());
  tdbToolComponent* const listed = component.release();
  ASSERT_TRUE(components_.AddTool(listed, false));
  EXPECT_TRUE(all_marked(*listed));
  EXPECT_THAT(scratch_.Files("components"), ElementsAre(Key("C{{47}}1.ktcf")));
  for (int source : {1, 2}) {
    WatchedComponents again;
    EXPECT_TRUE(again.Init(scratch_.Path("components")) && again.Read());
    EXPECT_FALSE(again.HasReported()) << testing::PrintToString(again.events);
    std::vector<tdbToolComponent> found;
    again.GetTools(found, source);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].GetCode(), "C/1");
    EXPECT_TRUE(all_marked(found[0]));
    EXPECT_EQ(found[0].GetItem(0)->GetName(), "Holder");
    std::string text;
    found[0].WriteXml(text, {});
    EXPECT_EQ(text, scratch_.Files("components")["C{{47}}1.ktcf"]);
  }
}

TEST_F(Components, GiveAUseTheirMembers) {
  add_component(components_, "C1");
  const tdbToolComponent* use = AddUse("T1", "C1");
  ASSERT_EQ(use->GetItemCount(), 1U);
  EXPECT_TRUE(use->GetItem(0)->IsComponent());
  EXPECT_FALSE(use->IsComponent()) << "the use is the tool's own";
  EXPECT_NE(use->GetItem(0), components_.GetToolComponent(0, 1)->GetItem(0));
  AddUse("T2", "none");
  EXPECT_EQ(tools_.events.back(), "error 21: none");
}

TEST_F(Components, ResolveReferencesOfStoredTools) {
  add_component(components_, "C1");
  tools_.UpdateTool(static_cast<tdbTool*>(AddUse("T1", "C1")->GetRoot()));
  const tdbTool* tool = tools_.RefreshTool("T1");
  ASSERT_NE(tool, nullptr);
  EXPECT_EQ(tool->GetHolderCount(), 1);
}

/// The tool T1: a use of C1, on whose holder sits a cutter, at heights 100, 10 and 1.
class Attached : public Components {
 protected:
  Attached() {
    add_component(components_, "C1")->GetItem(0)->SetPos(AtHeight(10));
    use_ = AddUse("T1", "C1");
    use_->SetPos(AtHeight(100));
    cutter_ = new tdbToolCutter(0);
    cutter_->SetName("cutter");
    cutter_->SetPos(AtHeight(1));
    static_cast<tdbToolHolder*>(use_->GetItem(0))->AddItem(cutter_);
    tool_ = static_cast<tdbTool*>(use_->GetRoot());
  }

  static Transformation<double> AtHeight(double z) {
    Transformation<double> result;
    result(2, 3) = z;
    return result;
  }

  tdbTool* tool_;
  tdbToolComponent* use_;
  tdbToolCutter* cutter_;
};

TEST_F(Attached, ItemsStayOnTheMemberOfTheirName) {
  const tdbItem* const old_member = cutter_->GetParent();
  tools_.UpdateToolComponents();
  ASSERT_EQ(tool_->GetCutterCount(), 1);
  EXPECT_EQ(tool_->GetCutter(0), cutter_);
  EXPECT_NE(cutter_->GetParent(), old_member);
  EXPECT_EQ(cutter_->GetParent(), use_->GetItem(0));
  EXPECT_EQ(use_->GetItemCount(), 1U);
  EXPECT_FALSE(tool_->HasError());
}

TEST_F(Attached, ItemsMoveUpWhenTheirMemberIsGone) {
  components_.GetToolComponent(0, 1)->GetItem(0)->SetName("Another");
  tools_.UpdateToolComponents();
  EXPECT_EQ(cutter_->GetParent(), tool_);
  EXPECT_EQ(cutter_->GetPos()(2, 3), 111) << "where it was";
  ASSERT_TRUE(tool_->HasError());
  EXPECT_THAT(tool_->GetErrs()[0].message, HasSubstr("C1"));
}

TEST_F(Attached, ItemsOutliveTheComponent) {
  EXPECT_TRUE(components_.RemoveToolComponentByCode("C1"));
  ASSERT_EQ(tool_->GetItemCount(), 1U);
  EXPECT_EQ(tool_->GetItem(0), cutter_);
  EXPECT_EQ(cutter_->GetPos()(2, 3), 111);
}

TEST_F(Attached, UsesOnUsesAreLoadedToo) {
  add_component(components_, "C2", "first");
  auto* inner = new tdbToolComponent(0, "inner", "C2");
  static_cast<tdbToolHolder*>(use_->GetItem(0))->AddItem(inner);
  tools_.UpdateToolComponents();
  EXPECT_EQ(tool_->GetHolderCount(), 2);
  EXPECT_EQ(inner->GetItemCount(), 1U);
  EXPECT_TRUE(components_.RemoveToolComponentByCode("C1"));
  EXPECT_THAT((std::vector<const tdbItem*>{tool_->GetItem(0), tool_->GetItem(1)}),
              testing::UnorderedElementsAre(cutter_, inner));
  EXPECT_EQ(inner->GetItemCount(), 1U);
}

struct RemovalCase {
  std::string_view name;
  void (*remove)(WatchedComponents& db);
  int calls;  ///< of the before-delete callback, for a library of C1 and C2
};

constexpr RemovalCase kRemovals[] = {
    {"ByCode", [](auto& db) { db.RemoveToolComponentByCode("C1"); }, 1},
    {"ByPointer",
     [](auto& db) {
       const std::unique_ptr<tdbToolComponent> mine(db.GetToolComponent(0, 1));
       db.RemoveTool(mine.get());
     },
     1},
    {"AllWithFiles", [](auto& db) { db.RemoveAllToolComponents(true, 1); }, 2},
    {"AllThoughTheFilesStay",
     [](auto& db) {
       std::filesystem::remove_all(db.GetFolderPath());
       db.RemoveAllToolComponents(true, 1);
     },
     2},
    {"AllListed", [](auto& db) { db.RemoveAllToolComponents(false, 1); }, 2},
    {"AllFiles", [](auto& db) { db.RemoveAllToolComponents(true, 2); }, 0},
    {"UnknownCode", [](auto& db) { db.RemoveToolComponentByCode("none"); }, 0},
    {"Replaced", [](auto& db) { add_component(db, "C1"); }, 0},
    {"Reloaded", [](auto& db) { db.Reload({}); }, 0},
};

class ComponentRemoval : public Components, public testing::WithParamInterface<RemovalCase> {};

TEST_P(ComponentRemoval, CallsBackOnceWhileTheComponentIsListed) {
  add_component(components_, "C1");
  add_component(components_, "C2");
  struct Seen {
    WatchedComponents& db;
    int listed = 0;
    int calls = 0;
  } seen{components_};
  components_.SetBeforeDeleteCallback(
      [](void* user, tdbToolComponent* component) {
        auto& s = *static_cast<Seen*>(user);
        ++s.calls;
        s.listed += s.db.GetToolComponentByCode(component->GetCode(), 1) == component ? 1 : 0;
      },
      &seen);
  GetParam().remove(components_);
  EXPECT_EQ(seen.calls, GetParam().calls);
  EXPECT_EQ(seen.listed, GetParam().calls);
}

INSTANTIATE_TEST_SUITE_P(Ways, ComponentRemoval, testing::ValuesIn(kRemovals),
                         row_name<RemovalCase>);

TEST_F(Components, KeepTheirUsesWhenTheirFileCannotBeDeleted) {
  add_component(components_, "C1");
  const tdbToolComponent* use = AddUse("T1", "C1");
  std::filesystem::rename(scratch_.Path("components"), scratch_.Path("away"));
  EXPECT_FALSE(components_.RemoveToolComponentByCode("C1"));
  EXPECT_EQ(components_.GetCount(1), 1);
  EXPECT_EQ(use->GetItemCount(), 1U);
}

TEST(ComponentLink, EndsWithTheToolDatabase) {
  tdbToolComponentsDB components("", 1);
  add_component(components, "C1");
  {
    tdbToolDB tools("", 1);
    tools.LinkToolComponents(&components);
    const tdbToolDB copy(tools);
    EXPECT_EQ(copy.GetToolComponentDB(), &components);
  }
  EXPECT_TRUE(components.RemoveToolComponentByCode("C1"));
}

TEST(ComponentLink, EndsWithTheComponentsDatabase) {
  tdbToolDB tools("", 1);
  {
    tdbToolComponentsDB components("", 1);
    tools.LinkToolComponents(nullptr);
    tools.LinkToolComponents(&components);
  }
  EXPECT_EQ(tools.GetToolComponentDB(), nullptr);
  tools.UpdateToolComponents();
  tdbToolComponentsDB next("", 1);
  tools.LinkToolComponents(&next);
  EXPECT_EQ(tools.GetToolComponentDB(), &next);
}

TEST(ComponentLink, LeavesTheCallbackOfAnotherAlone) {
  tdbToolComponentsDB components("", 1);
  add_component(components, "C1");
  int calls = 0;
  {
    tdbToolDB tools("", 1);
    tools.LinkToolComponents(&components);
    components.SetBeforeDeleteCallback(
        [](void* user, tdbToolComponent*) { ++*static_cast<int*>(user); }, &calls);
  }
  components.RemoveAllToolComponents(false, 1);
  EXPECT_EQ(calls, 1);
}

/// A tool database with one use of C1.
struct Tools {
  Tools() { tool->AddItem(new tdbToolComponent(0, "use", "C1")); }

  bool HasUse() const { return tool->GetItemCount() == 1; }

  tdbToolDB db{"", 1};
  tdbTool* tool = add_tool(db, "T1");
};

void remove_c1(tdbToolComponentsDB& db) {
  add_component(db, "C1");
  EXPECT_TRUE(db.RemoveToolComponentByCode("C1"));
}

class OneLink : public testing::Test {
 protected:
  tdbToolComponentsDB first_{"", 1};
  tdbToolComponentsDB second_{"", 1};
  Tools tools_;
  Tools others_;
};

TEST_F(OneLink, MovesToTheNextComponents) {
  tools_.db.LinkToolComponents(&first_);
  tools_.db.LinkToolComponents(&second_);
  remove_c1(first_);
  EXPECT_TRUE(tools_.HasUse());
  remove_c1(second_);
  EXPECT_FALSE(tools_.HasUse());
}

TEST_F(OneLink, IsNotCopiedWithTheComponents) {
  tools_.db.LinkToolComponents(&first_);
  tdbToolComponentsDB copy(first_);
  second_ = first_;
  remove_c1(copy);
  remove_c1(second_);
  EXPECT_TRUE(tools_.HasUse());
}

TEST_F(OneLink, EndsWhenTheToolsAreAssigned) {
  tools_.db.LinkToolComponents(&first_);
  tools_.db = others_.db;
  remove_c1(first_);
  EXPECT_TRUE(tools_.HasUse());
}

TEST_F(OneLink, StaysWithTheToolsThatTookItOver) {
  tools_.db.LinkToolComponents(&first_);
  others_.db.LinkToolComponents(&first_);
  tools_.db.LinkToolComponents(&second_);
  remove_c1(first_);
  EXPECT_TRUE(tools_.HasUse());
  EXPECT_FALSE(others_.HasUse());
}

}  // namespace
}  // namespace tooldb
