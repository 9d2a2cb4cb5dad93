#include <string>
#include <string_view>

#include "tooldb/model/text.h"
#include "tooldb/model/type_tables.h"
#include "tooldb/tool_parts.h"
#include "tooldb/xml/grammar.h"
#include "tooldb/xml/item_writer.h"
#include "tooldb/xml/xml_append.h"

namespace tooldb {
namespace {

constexpr int kCutterVersion = 4;
constexpr int kShankVersion = 4;
constexpr int kHolderVersion = 5;
constexpr int kFixedLinkVersion = 3;

std::string interference(const tdbItem& item) {
  std::string text;
  item.WriteInterfSettingsXml(text);
  return text;
}

// The second half of a start tag, from the name on.
void append_reference(std::string& out, const tdbItem& item) {
  append(out, Attribute{att::kName, item.GetName()},
         Attribute{att::kParent, parent_reference(item)}, ' ', interference(item), '>');
}

bool has_shape_file(const tdbItem& item) { return !trimmed(item.GetShapeFilePath()).empty(); }
bool has_profile(const tdbItem& item) { return !trimmed(item.GetProfileXml()).empty(); }

// A holder that an older file took from the library is a profile of its own in current files.
std::string_view holder_type_name(int type) {
  return type == kHolderFromLibrary ? kOtherRevolved
                                    : type_name(kHolderTypes, type, kOtherRevolved);
}

}  // namespace
}  // namespace tooldb

using namespace tooldb;  // NOLINT(google-build-using-namespace): members of global classes follow

void tdbToolCutter::WriteXml(std::string& out, const std::vector<std::string>& search_paths) const {
  append(out, '<', tag::kCutter, ' ',
         Attribute{att::kType, type_name(kCutterTypes, GetType(), kOtherRevolved)},
         Attribute{att::kVersion, kCutterVersion});
  append_pose(out, GetPos());
  append(out, ' ', Attribute{att::kName, GetName()}, ' ',
         Attribute{att::kParent, parent_reference(*this)}, ' ', interference(*this), '>');
  append_parameters(out, *this);
  const bool with_file = (GetType() == 6 || GetType() == 15) && has_shape_file(*this);
  const bool with_profile = (GetType() == 5 || GetType() == 8) && has_profile(*this);
  if (with_file) append_shape_file(out, *this, search_paths, "\n");
  if (with_profile || (with_file && GetType() == 15)) {
    append_profile(out, *this);
    out.push_back('\n');
  }
  append_color(out, GetMaterial());
  append_named_pose(out, tag::kProfilePose, GetProfileCSys());
  append_named_pose(out, tag::kShapePose, GetShapePos());
  append(out, "</", tag::kCutter, ">\n");
}

void tdbToolShank::WriteXml(std::string& out, const std::vector<std::string>& search_paths) const {
  append(out, '<', tag::kShank, ' ',
         Attribute{att::kType, type_name(kShankTypes, GetType(), kOtherRevolved)},
         Attribute{att::kVersion, kShankVersion});
  append_pose(out, GetPos());
  append_reference(out, *this);
  append_parameters(out, *this);
  if (GetType() == 3 && has_shape_file(*this)) append_shape_file(out, *this, search_paths, "");
  if ((GetType() == 2 || GetType() == 5) && has_profile(*this)) append_profile(out, *this);
  append_named_pose(out, tag::kShapePose, GetShapePos());
  append_color(out, GetMaterial());
  append(out, "</", tag::kShank, ">\n");
}

void tdbToolHolder::WriteXml(std::string& out, const std::vector<std::string>& search_paths) const {
  append(out, '<', tag::kHolder, ' ', Attribute{att::kType, holder_type_name(GetType())},
         Attribute{att::kVersion, kHolderVersion},
         Attribute{att::kSpinning, word::flag(IsSpinningEnable())});
  append_pose(out, GetPos());
  append_reference(out, *this);
  append_parameters(out, *this);
  if (GetType() == 3 && has_shape_file(*this)) append_shape_file(out, *this, search_paths, "");
  if ((GetType() == 2 || GetType() == 4) && has_profile(*this)) append_profile(out, *this);
  append_color(out, GetMaterial());
  append_named_pose(out, tag::kShapePose, GetShapePos());
  append(out, "</", tag::kHolder, ">\n");
}

void tdbFixedLink::WriteXml(std::string& out, const std::vector<std::string>&) const {
  append(out, '<', tag::kFixedLink, ' ', Attribute{att::kType, kFixedLinkTypes[0].name},
         Attribute{att::kVersion, kFixedLinkVersion});
  append_pose(out, GetPos());
  append_reference(out, *this);
  append_parameters(out, *this);
  append_color(out, GetMaterial());
  append_named_pose(out, tag::kShapePose, GetShapePos());
  append(out, "</", tag::kFixedLink, ">\n");
}

void tdbToolAngleHead::WriteXml(std::string&, const std::vector<std::string>&) const {}
