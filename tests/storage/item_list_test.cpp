#include "tooldb/storage/item_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "tooldb/model/text.h"
#include "tooldb/tool.h"

namespace tooldb {
namespace {

void by_code_text(std::vector<tdbCompositeItem*>& items) {
  std::ranges::stable_sort(items, {}, &tdbCompositeItem::GetCode);
}

std::vector<std::string> codes(const ItemList& list) {
  std::vector<std::string> result;
  for (const auto* item : list.Snapshot()) result.push_back(item->GetCode());
  return result;
}

/// The slow, obvious answer: the first item in the list that `accept` takes.
template <class Accept>
const tdbCompositeItem* first(const ItemList& list, Accept&& accept) {
  for (const auto* item : list.Snapshot()) {
    if (accept(*item)) return item;
  }
  return nullptr;
}

void expect_finds_as_a_walk_does(const ItemList& list, const std::vector<std::string>& candidates) {
  for (const std::string& code : candidates) {
    EXPECT_EQ(list.FindCode(code),
              first(list, [&](const auto& item) { return item.GetCode() == code; }))
        << code;
    EXPECT_EQ(
        list.FindComparable(code),
        first(list, [&](const auto& item) { return comparable_code(item.GetCode()) == code; }))
        << code;
  }
}

TEST(ItemList, FindsAsAWalkDoesAfterAnyChanges) {
  const std::vector<std::string> candidates = {"A", "a", " a ", "B",
                                               "b", "C", "",    "LONG CODE NO 1"};
  std::mt19937 random(20240731);
  const auto below = [&](std::size_t n) { return static_cast<int>(random() % n); };
  const auto code = [&] { return candidates[random() % candidates.size()]; };
  ItemList list;
  for (int step = 0; step < 3000; ++step) {
    auto* item = static_cast<tdbTool*>(list.Size() == 0 ? nullptr : list.At(below(list.Size())));
    switch (item == nullptr || list.Size() < 5 ? 0 : below(8)) {
      case 0:
        list.Append(*new tdbTool(code()));
        break;
      case 1:
      case 2:
        EXPECT_EQ(list.Take(*item).get(), item);
        break;
      case 3:
        item->SetCode(code());
        break;
      case 4:
        *item = tdbTool(code());
        break;
      case 5:
        EXPECT_EQ(list.Replace(*item, std::make_unique<tdbTool>(code())).get(), item);
        break;
      case 6:
        list.MoveToEnd(*item);
        EXPECT_EQ(list.At(static_cast<int>(list.Size()) - 1), item);
        break;
      default:
        list.Sort(by_code_text);
        list.Reverse();
    }
    expect_finds_as_a_walk_does(list, candidates);
    const auto listed = list.Snapshot();
    for (int asked = 0; asked < 3 && !listed.empty(); ++asked) {
      const int position = below(listed.size());
      EXPECT_EQ(list.At(position), listed[static_cast<std::size_t>(position)]);
    }
  }
}

TEST(ItemList, ForgetsAnItemThatItHandedBack) {
  ItemList list;
  list.Append(*new tdbTool("A"));
  const auto taken = list.Take(*list.At(0));
  taken->SetCode("B");
  EXPECT_EQ(list.FindCode("B"), nullptr);
  EXPECT_EQ(list.Take(*taken), nullptr);
  EXPECT_FALSE(list.Holds(*taken));
}

TEST(ItemList, DoesNotWatchACopy) {
  ItemList list;
  list.Append(*new tdbTool("A"));
  tdbTool copy(static_cast<const tdbTool&>(*list.At(0)));
  copy.SetCode("B");
  EXPECT_EQ(list.FindCode("B"), nullptr);
  EXPECT_EQ(list.FindCode("A"), list.At(0));
}

TEST(ItemList, LetsItemsOutliveIt) {
  std::unique_ptr<tdbCompositeItem> taken;
  {
    ItemList list;
    list.Append(*new tdbTool("A"));
    list.Append(*new tdbTool("B"));
    taken = list.Take(*list.At(0));
  }
  taken->SetCode("C");
  EXPECT_EQ(taken->GetCode(), "C");
}

TEST(ItemList, ReplacesInPlace) {
  ItemList list;
  for (const char* code : {"A", "B", "C"}) list.Append(*new tdbTool(code));
  list.Replace(*list.At(1), std::make_unique<tdbTool>("X"));
  EXPECT_THAT(codes(list), testing::ElementsAre("A", "X", "C"));
  EXPECT_EQ(list.At(-1), nullptr);
  EXPECT_EQ(list.At(3), nullptr);
}

TEST(ItemList, EmptiesItselfBeforeItsItemsDie) {
  auto list = std::make_unique<ItemList>();
  auto* tool = new tdbTool("A");
  tool->AddItem(new tdbTool("child"));
  std::size_t listed = 99;
  struct Context {
    const ItemList* list;
    std::size_t* listed;
  } context{list.get(), &listed};
  tool->SetDeleteItemCallback(
      [](void* c, tdbItem*) {
        auto& seen = *static_cast<Context*>(c);
        *seen.listed = seen.list->Snapshot().size();
      },
      &context);
  list->Append(*tool);
  list.reset();
  EXPECT_EQ(listed, 0U);
}

}  // namespace
}  // namespace tooldb
