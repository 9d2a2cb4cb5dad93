#include "tooldb/type_names.h"

#include <span>

#include "tooldb/model/type_tables.h"
#include "tooldb/platform/guard.h"
#include "tooldb/tool.h"
#include "tooldb/tool_parts.h"

namespace tooldb {
namespace {

// The table of a class, and the name of a code that it does not hold.
struct Names {
  std::span<const TypeName> table;
  std::string_view otherwise;
};

Names names_of(const tdbItem& item) {
  if (dynamic_cast<const tdbTool*>(&item) != nullptr) return {kToolTypes, kOtherToolType};
  if (dynamic_cast<const tdbCuttingTool*>(&item) != nullptr) return {kCuttingToolTypes, "UNDEF"};
  if (dynamic_cast<const tdbToolCutter*>(&item) != nullptr) return {kCutterTypes, kOtherRevolved};
  if (dynamic_cast<const tdbToolShank*>(&item) != nullptr) return {kShankTypes, kOtherRevolved};
  if (dynamic_cast<const tdbToolHolder*>(&item) != nullptr) return {kHolderTypes, kOtherRevolved};
  if (dynamic_cast<const tdbFixedLink*>(&item) != nullptr) {
    return {kFixedLinkTypes, kFixedLinkTypes.front().name};
  }
  return {};
}

}  // namespace
}  // namespace tooldb

std::string tdbGetTypeName(const tdbItem& item) {
  const auto [table, otherwise] = tooldb::names_of(item);
  const auto row = std::ranges::find(table, item.GetType(), &tooldb::TypeName::code);
  const std::string_view name = row == table.end() ? otherwise : row->name;
  return tooldb::guarded(std::string(), [name] { return std::string(name); });
}

int tdbGetTypeByName(const tdbItem& item, const std::string& name) {
  const auto table = tooldb::names_of(item).table;
  const auto row = std::ranges::find(table, std::string_view(name), &tooldb::TypeName::name);
  return row == table.end() ? -1 : row->code;
}

std::vector<std::string> tdbGetTypeNames(const tdbItem& item) {
  return tooldb::guarded(std::vector<std::string>(), [&] {
    std::vector<std::string> names;
    const auto table = tooldb::names_of(item).table;
    for (const auto& row : table) {
      // A code's first row is the one that is written.
      if (&*std::ranges::find(table, row.code, &tooldb::TypeName::code) == &row) {
        names.emplace_back(row.name);
      }
    }
    return names;
  });
}
