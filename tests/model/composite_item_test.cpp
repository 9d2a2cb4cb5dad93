#include "tooldb/composite_item.h"

#include <gtest/gtest.h>

#include "tooldb/tool_parts.h"

namespace {

struct Log {
  std::string text;

  static void Added(void* log, tdbItem* item) {
    static_cast<Log*>(log)->text += "+" + item->GetName();
  }
  static void Deleted(void* log, tdbItem* item) {
    static_cast<Log*>(log)->text += "-" + item->GetName();
  }
};

tdbToolHolder* holder_named(const std::string& name) {
  auto* holder = new tdbToolHolder(1);
  holder->SetName(name);
  return holder;
}

class Composite : public testing::Test {
 protected:
  Composite() {
    root_.SetPostAddItemCallback(&Log::Added, &log_);
    root_.SetDeleteItemCallback(&Log::Deleted, &log_);
    for (const char* name : {"a", "b", "c"}) root_.AddItem(holder_named(name));
  }

  Log log_;  // outlives root_, whose destructor calls back
  tdbToolComponent root_;
};

TEST_F(Composite, CallbacksFireForEveryChildInOrder) {
  EXPECT_EQ(log_.text, "+a+b+c");
  EXPECT_TRUE(root_.RemoveItems(false));
  EXPECT_EQ(log_.text, "+a+b+c-a-b-c");
  root_.SetModified(false);
  EXPECT_FALSE(root_.RemoveItems(false));
  EXPECT_TRUE(root_.IsModified());
}

TEST_F(Composite, RemovingMarksOnlyWhenTheItemIsNoChild) {
  root_.SetModified(false);
  const std::unique_ptr<tdbItem> kept(root_.GetItem(1));
  EXPECT_TRUE(root_.RemoveItem(kept.get(), true));
  EXPECT_FALSE(root_.IsModified());
  EXPECT_EQ(root_.GetItem(1)->GetName(), "c");
  EXPECT_EQ(kept->GetName(), "b");
  EXPECT_FALSE(root_.RemoveItem(kept.get(), false));
  EXPECT_TRUE(root_.IsModified());
  EXPECT_FALSE(root_.AddItem(nullptr));
}

TEST_F(Composite, ChildrenMayLeaveInAnyOrder) {
  // 0 is the front, whose place stays empty for a while.
  for (const std::vector<unsigned>& order :
       {std::vector<unsigned>{0, 0, 0}, {0, 1, 0}, {1, 0, 0}}) {
    tdbToolComponent copy(root_);
    copy.SetDeleteItemCallback(nullptr, nullptr);
    std::vector<std::string> left{"a", "b", "c"};
    for (const unsigned index : order) {
      EXPECT_EQ(copy.GetItem(index)->GetName(), left[index]);
      EXPECT_TRUE(copy.RemoveItem(copy.GetItem(index), false));
      left.erase(left.begin() + index);
      copy.AddItem(holder_named("n"));
      left.emplace_back("n");
      ASSERT_EQ(copy.GetItemCount(), left.size());
      for (unsigned i = 0; i < left.size(); ++i) EXPECT_EQ(copy.GetItem(i)->GetName(), left[i]);
    }
  }
}

TEST_F(Composite, NamesMatchExactlyAmongDirectChildren) {
  auto* nested = holder_named("abc");
  static_cast<tdbCompositeItem*>(root_.GetItem(0))->AddItem(nested);
  EXPECT_EQ(root_.GetItemByName("b"), root_.GetItem(1));
  for (const char* name : {"B", "b ", "", "abc"}) EXPECT_EQ(root_.GetItemByName(name), nullptr);
  EXPECT_EQ(tdbToolComponent().GetItem(7U), nullptr);
}

TEST_F(Composite, VisitWalksParentsFirst) {
  static_cast<tdbCompositeItem*>(root_.GetItem(0))->AddItem(holder_named("x"));
  root_.SetName("r");
  Log walk;
  root_.Visit(&Log::Added, &walk);
  EXPECT_EQ(walk.text, "+r+a+x+b+c");
}

TEST_F(Composite, ACopyIsDeepAndTellsOfItsClones) {
  static_cast<tdbCompositeItem*>(root_.GetItem(2))->AddItem(new tdbToolCutter(4));
  root_.PushError(tdbError(5, "met while building"));
  {
    tdbToolComponent copy(root_);
    EXPECT_EQ(log_.text, "+a+b+c+a+b+c");
    EXPECT_EQ(copy, root_);
    EXPECT_NE(copy.GetItem(0), root_.GetItem(0));
    EXPECT_EQ(copy.GetItem(0)->GetParent(), &copy);
    EXPECT_FALSE(copy.HasError());
    static_cast<tdbCompositeItem*>(copy.GetItem(2))->GetItem(0)->SetType(3);
    EXPECT_NE(copy, root_) << "a difference deep in the tree is seen";
  }
  EXPECT_EQ(log_.text, "+a+b+c+a+b+c-a-b-c") << "the copy's destructor tells of its children";
}

TEST_F(Composite, AssignmentReplacesTheChildrenSilently) {
  tdbToolComponent other;
  other.AddItem(holder_named("z"));
  log_.text.clear();
  root_ = other;
  EXPECT_EQ(log_.text, "+z") << "no delete callback; the target's own post-add callback";
  EXPECT_EQ(root_.GetItemCount(), 1U);

  auto* inner = new tdbToolComponent();
  inner->AddItem(holder_named("deep"));
  root_.AddItem(inner);
  root_ = *inner;  // the source hangs below the target
  EXPECT_EQ(root_.GetItem(0)->GetName(), "deep");
}

TEST(CompositeEquality, DependsOnOrderAndKind) {
  tdbToolComponent groups[4];
  for (const char* name : {"a", "b"}) groups[0].AddItem(holder_named(name));
  for (const char* name : {"b", "a"}) groups[1].AddItem(holder_named(name));
  groups[2].AddItem(new tdbToolCutter());
  groups[3].AddItem(new tdbFixedLink(0));
  for (const auto& one : groups) {
    for (const auto& other : groups) EXPECT_EQ(one == other, &one == &other);
  }
}

}  // namespace
