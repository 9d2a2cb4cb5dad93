#include "tooldb/storage/tool_order.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

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

bool text_comes_first(std::string_view a, std::string_view b) {
  const auto folded = [](char c) { return static_cast<unsigned char>(lower(c)); };
  return std::ranges::lexicographical_compare(a, b, {}, folded, folded);
}

bool by_code(const tdbCompositeItem& a, const tdbCompositeItem& b) {
  return code_comes_first(a.GetCode(), b.GetCode());
}

bool by_type(const tdbCompositeItem& a, const tdbCompositeItem& b) {
  return a.GetType() < b.GetType();
}

/// The order by what a member function of the tool answers.
template <auto Get>
bool by(const tdbCompositeItem& a, const tdbCompositeItem& b) {
  return (static_cast<const tdbTool&>(a).*Get)() < (static_cast<const tdbTool&>(b).*Get)();
}

bool by_description(const tdbCompositeItem& a, const tdbCompositeItem& b) {
  return std::string_view(static_cast<const tdbTool&>(a).GetDescr()) <
         static_cast<const tdbTool&>(b).GetDescr();
}

struct SortKey {
  int key;
  ItemList::Less less;
};

constexpr auto kToolSortKeys = std::to_array<SortKey>({
    {2, by_type},
    {3, by_description},
    {4, by<&tdbTool::GetTraceColor>},
    {5, by<&tdbTool::GetLength>},
    {6, by<&tdbTool::GetOffsetX>},
    {7, by<&tdbTool::GetDiameter>},
    {8, by<&tdbTool::GetSubType>},
    {9, by<&tdbTool::GetOffsetY>},
});

}  // namespace

bool code_comes_first(std::string_view a, std::string_view b) {
  const long long number_a = number_of_code(a);
  const long long number_b = number_of_code(b);
  if (number_a != 0 && number_b != 0) return number_a < number_b;
  return text_comes_first(a, b);
}

ItemList::Less tool_order(int key) {
  const auto row = std::ranges::find(kToolSortKeys, key, &SortKey::key);
  return row == kToolSortKeys.end() ? by_code : row->less;
}

ItemList::Less component_order(int key) { return key == 2 ? by_type : by_code; }

}  // namespace tooldb
