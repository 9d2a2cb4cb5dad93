#include <gtest/gtest.h>

#include <algorithm>

#include "tests/geom/row_name.h"
#include "tests/storage/watched_database.h"
#include "tooldb/model/tree_walk.h"

namespace tooldb {
namespace {

/// True when the component and all below it have the component mark.
bool all_marked(const tdbToolComponent& component) {
  return component.IsComponent() &&
         std::ranges::all_of(items_below(component), &tdbItem::IsComponent);
}

TEST(Components, AreStoredAsDefinitionsAndReadAgain) {
  const ScratchFolder scratch;
  tdbToolComponentsDB components("", 0);
  EXPECT_TRUE(components.Create(scratch.Path("lib")));
  EXPECT_EQ(components.GetFolderPath(), scratch.Path("lib"));
  tdbToolComponent* const listed = make_component("C/1").release();
  auto* cutting = new tdbCuttingTool(new tdbToolCutter(0), new tdbToolShank(0), 0);
  static_cast<tdbToolHolder*>(listed->GetItem(0))->AddItem(cutting);
  listed->AddItem(make_component("inner").release());
  ASSERT_TRUE(components.AddTool(listed, false));
  EXPECT_TRUE(all_marked(*listed));
  for (int source : {1, 2}) {
    WatchedComponents again;
    EXPECT_TRUE(again.Init(scratch.Path("lib")) && again.Read());
    EXPECT_FALSE(again.HasReported()) << again.Told(scratch);
    std::vector<tdbToolComponent> found;
    again.GetTools(found, source);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].GetCode(), "C/1");
    EXPECT_TRUE(all_marked(found[0]));
    std::string text;
    found[0].WriteXml(text, {});
    EXPECT_EQ(scratch.Files("lib"), (Files{{"C{{47}}1.ktcf", text}}));
  }
}

/// A tool database with one use of C1.
struct Tools {
  Tools() { tool->AddItem(new tdbToolComponent(0, "use", "C1")); }

  Tools& Link(tdbToolComponentsDB& components) {
    db.LinkToolComponents(&components);
    return *this;
  }
  bool HasUse() const { return tool->GetItemCount() == 1; }

  tdbToolDB db{"", 1};
  tdbTool* tool = add_tool(db, "T1");
};

struct Linked {
  tdbToolComponentsDB first{"", 1};
  tdbToolComponentsDB second{"", 1};
  Tools mine;
  Tools others;
};

void remove_c1(tdbToolComponentsDB& db) {
  add_component(db, "C1");
  EXPECT_TRUE(db.RemoveToolComponentByCode("C1"));
}

struct LinkCase {
  std::string_view name;
  void (*link)(Linked& all);
  /// Who still has the use of C1 after its removal from the first components, or from the second.
  std::string_view first, second;
};

constexpr LinkCase kLinks[] = {
    {"MovesToTheNextComponents", [](Linked& all) { all.mine.Link(all.first).Link(all.second); },
     "mine others", "others"},
    {"IsNotCopiedWithTheComponents",
     [](Linked& all) {
       all.mine.Link(all.first);
       tdbToolComponentsDB copy(all.first);
       remove_c1(copy);
       all.second = all.first;
     },
     "others", "mine others"},
    {"EndsWhenTheToolsAreAssigned",
     [](Linked& all) { all.mine.Link(all.first).db = all.others.db; }, "mine others",
     "mine others"},
    {"StaysWithTheToolsThatTookItOver",
     [](Linked& all) {
       all.mine.Link(all.first);
       all.others.Link(all.first);
       all.mine.Link(all.second);
     },
     "mine", "others"},
    {"EndsWithTheToolDatabase",
     [](Linked& all) {
       Tools gone;
       const tdbToolDB copy(gone.Link(all.first).db);
       EXPECT_EQ(copy.GetToolComponentDB(), &all.first);
     },
     "mine others", "mine others"},
    {"EndsWithTheComponentsDatabase",
     [](Linked& all) {
       {
         tdbToolComponentsDB gone("", 1);
         all.mine.Link(gone).db.LinkToolComponents(nullptr);
         EXPECT_EQ(all.mine.db.GetToolComponentDB(), &gone);
       }
       EXPECT_EQ(all.mine.db.GetToolComponentDB(), nullptr);
       all.mine.db.UpdateToolComponents();
       all.mine.Link(all.second);
     },
     "mine others", "others"},
    {"LeavesTheCallbackOfAnotherAlone",
     [](Linked& all) {
       Tools gone;
       gone.Link(all.first);
       all.first.SetBeforeDeleteCallback(tdbToolDB::BeforeDeleteComponent, &all.others.db);
     },
     "mine", "mine others"},
};

class ComponentLink : public testing::TestWithParam<LinkCase> {
 protected:
  static std::string Left(tdbToolComponentsDB Linked::*components) {
    Linked all;
    GetParam().link(all);
    remove_c1(all.*components);
    return all.mine.HasUse() ? (all.others.HasUse() ? "mine others" : "mine")
                             : (all.others.HasUse() ? "others" : "");
  }
};

TEST_P(ComponentLink, IsOne) {
  EXPECT_EQ(Left(&Linked::first), GetParam().first);
  EXPECT_EQ(Left(&Linked::second), GetParam().second);
}

INSTANTIATE_TEST_SUITE_P(Ways, ComponentLink, testing::ValuesIn(kLinks), row_name<LinkCase>);

}  // namespace
}  // namespace tooldb
