#include "apps/tree_text.h"

#include <fmt/format.h>

#include "apps/display_text.h"
#include "apps/tree_items.h"
#include "tooldb/placement.h"
#include "tooldb/tool_parts.h"
#include "tooldb/type_names.h"

namespace tooldb {
namespace {

constexpr int kWidth = 80;
// Deeper trees are drawn at this depth, so that a line keeps room for its text.
constexpr int kDeepest = 12;

std::string heading(const tdbItem& item) {
  std::string text(class_name(item));
  text += " '" + item.GetName() + "'";
  if (!item.GetCode().empty()) text += " code '" + item.GetCode() + "'";
  if (const std::string type = tdbGetTypeName(item); !type.empty()) text += ' ' + type;
  if (item.IsComponent()) text += ", of the library";
  return text;
}

std::string parameters_text(const tdbItem& item) {
  std::string text;
  for (const auto& [name, value] : item.GetParams()) {
    text += (text.empty() ? "" : " ") + name + '=' + value;
  }
  return text;
}

std::string geometry_text(const tdbItem& item) {
  std::string text;
  if (item.GetShapeFilePath()[0] != '\0') {
    text = fmt::format("model {} ({})", item.GetShapeFilePath(),
                       item.GetFileUnits() == 0 ? "mm" : "inch");
    const std::string pose = placement_text(item.GetShapePos());
    if (!pose.empty()) text += ", " + pose;
  }
  const std::string_view profile = item.GetProfileXml();
  if (!profile.empty()) {
    text += fmt::format("{}outline of {} bytes", text.empty() ? "" : "; ", profile.size());
  }
  return text;
}

}  // namespace

std::string placement_text(const Transformation<double>& placement) {
  if (placement == Transformation<double>()) return {};
  const auto [z, y, x] = tdbGetAngles(placement);
  std::string text = fmt::format("at {} {} {}", shown_number(placement(0, 3)),
                                 shown_number(placement(1, 3)), shown_number(placement(2, 3)));
  if (z != 0 || y != 0 || x != 0) {
    text +=
        fmt::format(", turned Z {} Y {} X {}", shown_number(z), shown_number(y), shown_number(x));
  }
  return text;
}

void append_tree(std::string& out, tdbCompositeItem& root) {
  out += "\nItems\n";
  for (const TreeItem& entry : items_below(root)) {
    const int indent = 2 * std::min(entry.depth, kDeepest);
    out += wrapped(printable(heading(*entry.item)), kWidth, indent);
    for (const auto& text : {placement_text(entry.item->GetPos()), parameters_text(*entry.item),
                             geometry_text(*entry.item)}) {
      if (!text.empty()) out += wrapped(printable(text), kWidth, indent + 4);
    }
  }
}

}  // namespace tooldb
