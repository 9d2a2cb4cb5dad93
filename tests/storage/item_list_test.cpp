#include "tooldb/storage/item_list.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <random>

#include "tooldb/model/text.h"
#include "tooldb/tool.h"

namespace tooldb {
namespace {

void by_code_text(std::vector<tdbCompositeItem*>& items) {
  std::ranges::stable_sort(items, {}, &tdbCompositeItem::GetCode);
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
  std::vector<std::unique_ptr<tdbCompositeItem>> taken;  // outlive the list
  std::optional<ItemList> all(std::in_place);
  ItemList& list = *all;
  std::vector<tdbCompositeItem*> plain;  // what must be listed
  for (int step = 0; step < 3000; ++step) {
    const auto at = plain.begin() + (plain.empty() ? 0 : below(plain.size()));
    auto* item = static_cast<tdbTool*>(plain.empty() ? nullptr : *at);
    switch (plain.size() < 5 ? 0 : below(9)) {
      case 0:
        plain.push_back(new tdbTool(code()));
        list.Append(*plain.back());
        break;
      case 1:
      case 2:
        taken.push_back(list.Take(*item));
        EXPECT_EQ(taken.back().get(), item);
        EXPECT_EQ(list.Take(*item), nullptr);
        EXPECT_FALSE(list.Holds(*item));
        plain.erase(at);
        break;
      case 3:
        item->SetCode(code());
        break;
      case 4:
        *item = tdbTool(code());
        break;
      case 5:
        *at = new tdbTool(code());
        EXPECT_EQ(list.Replace(*item, std::unique_ptr<tdbCompositeItem>(*at)).get(), item);
        break;
      case 6:
        list.MoveToEnd(*item);
        std::rotate(at, at + 1, plain.end());
        break;
      case 7:
        if (!taken.empty()) taken.back()->SetCode(code());
        tdbTool(*item).SetCode(code());  // of a copy
        break;
      default:
        list.Sort(by_code_text);
        list.Reverse();
        by_code_text(plain);
        std::ranges::reverse(plain);
    }
    ASSERT_EQ(list.Snapshot(), plain) << step;
    EXPECT_EQ(list.At(-1), nullptr);
    EXPECT_EQ(list.At(static_cast<int>(plain.size())), nullptr);
    for (std::size_t i = 0; i < plain.size(); i += 1 + random() % 3) {
      EXPECT_EQ(list.At(static_cast<int>(i)), plain[i]);
    }
    expect_finds_as_a_walk_does(list, candidates);
  }
  all.reset();
  for (const auto& item : taken) item->SetCode("the list is gone");
}

TEST(ItemList, EmptiesItselfBeforeItsItemsDie) {
  auto list = std::make_unique<ItemList>();
  auto* tool = new tdbTool("A");
  tool->AddItem(new tdbTool("child"));
  struct Context {
    const ItemList& list;
    std::size_t listed = 99;
  } context{*list};
  tool->SetDeleteItemCallback(
      [](void* c, tdbItem*) {
        auto& seen = *static_cast<Context*>(c);
        seen.listed = seen.list.Snapshot().size();
      },
      &context);
  list->Append(*tool);
  list.reset();
  EXPECT_EQ(context.listed, 0U);
}

}  // namespace
}  // namespace tooldb
