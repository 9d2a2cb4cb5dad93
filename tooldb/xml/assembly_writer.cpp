#include <string>
#include <string_view>

#include "tooldb/tool_parts.h"
#include "tooldb/xml/grammar.h"
#include "tooldb/xml/item_writer.h"
#include "tooldb/xml/xml_append.h"

using namespace tooldb;  // NOLINT(google-build-using-namespace): members of global classes follow

namespace {

constexpr int kCuttingToolVersion = 1;

void append_component_start(std::string& out, const tdbToolComponent& component,
                            std::string_view parent) {
  append(out, Attribute{att::kVersion, component.GetVersion()});
  append_pose(out, component.GetPos());
  append(out, Attribute{att::kName, component.GetName()}, Attribute{att::kParent, parent}, '>');
}

}  // namespace

void tdbCuttingTool::WriteXml(std::string& out,
                              const std::vector<std::string>& search_paths) const {
  append(out, '<', tag::kCuttingTool, Attribute{att::kVersion, kCuttingToolVersion},
         Attribute{att::kType, GetTypeName()});
  append_pose(out, GetPos());
  append(out, Attribute{att::kName, GetName()}, Attribute{att::kParent, parent_reference(*this)},
         '>');
  append_parameters(out, *this);
  append_items_below(out, *this, Contents::kCuttingTool, search_paths);
  append(out, "</", tag::kCuttingTool, ">\n");
}

void tdbToolComponent::WriteXml(std::string& out,
                                const std::vector<std::string>& search_paths) const {
  append(out, '<', tag::kToolComponent);
  if (IsComponent()) {
    append_component_start(out, *this, parent_name(*this));
    append_items_below(out, *this, Contents::kComponent, search_paths);
  } else {
    append(out, Attribute{att::kCode, GetCode()});
    append_component_start(out, *this, parent_reference(*this));
  }
  append(out, "</", tag::kToolComponent, ">\n");
}
