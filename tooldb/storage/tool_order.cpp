#include "tooldb/storage/tool_order.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <type_traits>

#include "tooldb/model/text.h"
#include "tooldb/tool.h"

namespace tooldb {

namespace {

/// The whole number that a code begins with; 0 without one, the nearest when it does not fit.
long long number_of_code(std::string_view code) {
  using Limits = std::numeric_limits<long long>;
  code.remove_prefix(std::min(code.find_first_not_of(kBlanks), code.size()));
  if (code.starts_with('+') && !code.starts_with("+-")) code.remove_prefix(1);
  long long number = 0;
  const auto result = std::from_chars(code.data(), code.data() + code.size(), number);
  if (result.ec != std::errc::result_out_of_range) return number;
  return code.starts_with('-') ? Limits::min() : Limits::max();
}

/// Codes that both begin with a number other than zero come in the order of these numbers, any
/// others as text without regard to case: "9" before "10", "A" before "b". The rule is mixed on
/// purpose, and over three codes it may run in a circle.
struct CodeKey {
  explicit CodeKey(std::string_view code) : number(number_of_code(code)), text(code) {
    std::ranges::transform(text, text.begin(), lower);
  }
  bool operator<(const CodeKey& other) const {
    if (number != 0 && other.number != 0) return number < other.number;
    return text < other.text;
  }

  long long number;
  std::string text;  // in lower case
};

template <class Key>
struct Keyed {
  Key key;
  tdbCompositeItem* item;
};

/// Merges two neighbouring runs of `run` rows each, or of what is left of them.
template <class Rows>
void merge_runs(Rows& from, Rows& to, std::size_t first, std::size_t run) {
  const std::size_t middle = std::min(first + run, from.size());
  const std::size_t last = std::min(middle + run, from.size());
  std::size_t left = first;
  std::size_t right = middle;
  for (std::size_t out = first; out < last; ++out) {
    const bool take_right = left == middle || (right < last && from[right].key < from[left].key);
    to[out] = std::move(from[take_right ? right++ : left++]);
  }
}

/// The standard sorts demand a consistent order, which that of codes is not.
template <class Rows>
void merge_sort(Rows& rows) {
  Rows scratch = rows;
  for (std::size_t run = 1; run < rows.size(); run *= 2) {
    for (std::size_t first = 0; first < rows.size(); first += 2 * run) {
      merge_runs(rows, scratch, first, run);
    }
    rows.swap(scratch);
  }
}

/// Takes the keys out first: in one row, they are compared much faster than in their tools.
template <auto key_of>
void sort_by(std::vector<tdbCompositeItem*>& items) {
  using Key = decltype(key_of(*items.front()));
  std::vector<Keyed<Key>> rows;
  rows.reserve(items.size());
  for (tdbCompositeItem* item : items) rows.push_back({key_of(*item), item});
  if constexpr (std::is_same_v<Key, CodeKey>) {
    merge_sort(rows);
  } else if (!std::ranges::is_sorted(rows, {}, &Keyed<Key>::key)) {
    std::ranges::stable_sort(rows, {}, &Keyed<Key>::key);
  }
  std::ranges::transform(rows, items.begin(), &Keyed<Key>::item);
}

CodeKey code_key(const tdbCompositeItem& item) { return CodeKey(item.GetCode()); }
int type_key(const tdbCompositeItem& item) { return item.GetType(); }

/// What a member function of the tool answers. What is no number counts as the largest.
template <auto Get>
auto key(const tdbCompositeItem& item) {
  const auto value = (static_cast<const tdbTool&>(item).*Get)();
  return value == value ? value : std::numeric_limits<decltype(value + 0)>::infinity();
}

std::string_view description_key(const tdbCompositeItem& item) {
  return static_cast<const tdbTool&>(item).GetDescr();
}

struct SortKey {
  int key;
  ItemList::Sorter sort;
};

constexpr auto kToolSortKeys = std::to_array<SortKey>({
    {2, sort_by<type_key>},
    {3, sort_by<description_key>},
    {4, sort_by<key<&tdbTool::GetTraceColor>>},
    {5, sort_by<key<&tdbTool::GetLength>>},
    {6, sort_by<key<&tdbTool::GetOffsetX>>},
    {7, sort_by<key<&tdbTool::GetDiameter>>},
    {8, sort_by<key<&tdbTool::GetSubType>>},
    {9, sort_by<key<&tdbTool::GetOffsetY>>},
});

}  // namespace

ItemList::Sorter tool_order(int key) {
  const auto row = std::ranges::find(kToolSortKeys, key, &SortKey::key);
  return row == kToolSortKeys.end() ? sort_by<code_key> : row->sort;
}

ItemList::Sorter component_order(int key) {
  return key == 2 ? sort_by<type_key> : sort_by<code_key>;
}

}  // namespace tooldb
