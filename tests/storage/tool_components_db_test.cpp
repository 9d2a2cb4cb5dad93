#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/geom/row_name.h"
#include "tests/storage/watched_database.h"

namespace tooldb {
namespace {

/// A tool database and a components database, linked, each in a folder of its own.
class Components : public testing::Test {
 protected:
  Components() {
    EXPECT_TRUE(tools_.Create(scratch_.Path("tools")));
    EXPECT_TRUE(components_.Create(scratch_.Path("components")));
    tools_.LinkToolComponents(&components_);
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
  tdbToolComponent* const listed = make_component("C/1").release();
  auto* cutting = new tdbCuttingTool(new tdbToolCutter(0), new tdbToolShank(0), 0);
  static_cast<tdbToolHolder*>(listed->GetItem(0))->AddItem(cutting);
  listed->AddItem(make_component("inner").release());
  ASSERT_TRUE(components_.AddTool(listed, false));
  EXPECT_TRUE(all_marked(*listed));
  for (int source : {1, 2}) {
    WatchedComponents again;
    EXPECT_TRUE(again.Init(scratch_.Path("components")) && again.Read());
    EXPECT_FALSE(again.HasReported()) << again.Told(scratch_);
    std::vector<tdbToolComponent> found;
    again.GetTools(found, source);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].GetCode(), "C/1");
    EXPECT_TRUE(all_marked(found[0]));
    std::string text;
    found[0].WriteXml(text, {});
    EXPECT_EQ(scratch_.Files("components"), (Files{{"C{{47}}1.ktcf", text}}));
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
  tools_.UpdateTool(tools_.GetToolByCode("T1", 1));
  const tdbTool* read = tools_.RefreshTool("T1");
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(read->GetHolderCount(), 1) << "resolved in what is stored, too";
}

/// The tool T1: a use of C1, on whose holder sits a cutter, at heights 100, 10 and 1.
class Attached : public Components {
 protected:
  Attached() {
    add_component(components_, "C1")->GetItem(0)->SetPos(at_height(10));
    use_ = AddUse("T1", "C1");
    use_->SetPos(at_height(100));
    tool_ = static_cast<tdbTool*>(use_->GetRoot());
    cutter_ = new tdbToolCutter(0);
    cutter_->SetPos(at_height(1));
    Hang(cutter_);
  }

  void Hang(tdbItem* item) { static_cast<tdbToolHolder*>(use_->GetItem(0))->AddItem(item); }

  tdbTool* tool_;
  tdbToolComponent* use_;
  tdbToolCutter* cutter_;
};

TEST_F(Attached, ItemsStayOnTheMemberOfTheirName) {
  const tdbItem* const old_member = cutter_->GetParent();
  tools_.UpdateToolComponents();
  ASSERT_EQ(tool_->GetCutterCount(), 1);
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
  EXPECT_THAT(tool_->GetErrs()[0].message, testing::HasSubstr("C1"));
}

TEST_F(Attached, ItemsAndUsesOutliveTheComponent) {
  add_component(components_, "C2", "first");
  auto* inner = new tdbToolComponent(0, "inner", "C2");
  Hang(inner);
  tools_.UpdateToolComponents();
  EXPECT_EQ(tool_->GetHolderCount(), 2) << "a use on a use is loaded, too";
  EXPECT_TRUE(components_.RemoveToolComponentByCode("C1"));
  EXPECT_THAT((std::vector<const tdbItem*>{tool_->GetItem(0), tool_->GetItem(1)}),
              testing::UnorderedElementsAre(cutter_, inner));
  EXPECT_EQ(cutter_->GetPos()(2, 3), 111);
  EXPECT_EQ(inner->GetItemCount(), 1U);
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
