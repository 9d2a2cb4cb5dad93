// What the reader makes of documents that the writer does not write: older layouts, missing and
// odd values, parents and components.

#include <set>
#include <sstream>

#include "geom/euler_angles.h"
#include "tests/golden.h"
#include "tests/xml/xml_fixture.h"
#include "tooldb/model/tree_walk.h"
#include "tooldb/model/type_tables.h"
#include "tooldb/platform/file_system.h"
#include "tooldb/tool_components_db.h"
#include "tooldb/xml_reader.h"

namespace tooldb {
namespace {

/// The written text, an attribute a line.
std::string in_lines(std::string text) {
  for (auto at = text.find("\" "); at != std::string::npos; at = text.find("\" ", at)) {
    text[at + 1] = '\n';
  }
  return text;
}

/// The lines of tools and parts of which nothing is said.
std::set<std::string> usual_lines() {
  std::set<std::string> usual;
  for (const int type : {0, 3}) {
    tdbTool tool("", type);
    tool.SetAutoColor(false);
    tool.SetAutoTcp(false);
    tool.AddItem(new tdbToolHolder(1));
    tool.AddItem(new tdbToolShank(1));
    tool.AddItem(new tdbToolCutter(0));
    std::istringstream lines(in_lines(xml_of(tool)));
    for (std::string line; std::getline(lines, line);) usual.insert(line);
  }
  return usual;
}

// What no document says any more.
constexpr std::pair<const char*, double tdbLegacyToolData::*> kOldNumbers[] = {
    {"cut_region_z", &tdbLegacyToolData::cut_region_z},
    {"cut_region_r", &tdbLegacyToolData::cut_region_r},
    {"max_spindle", &tdbLegacyToolData::max_spindle},
    {"min_spindle", &tdbLegacyToolData::min_spindle},
    {"length", &tdbLegacyToolData::length},
    {"approach_angle", &tdbLegacyToolData::approach_angle},
};

/// What sets a tool that was read apart from a new one, a line each.
std::string told_apart(tdbTool& tool) {
  std::ostringstream out;
  out << tool.GetCode() << '\n';
  if (tool.HasFlag(1)) out << "temporary\n";
  const tdbLegacyToolData& old = tool.GetLegacyData();
  for (const auto& [name, field] : kOldNumbers) {
    if (old.*field != tdbLegacyToolData().*field) out << name << ' ' << old.*field << '\n';
  }
  if (old.check_max_feed) out << "check_max_feed\n";
  if (old.insert_number != 0) out << "insert_number " << old.insert_number << '\n';
  static const std::set<std::string> usual = usual_lines();
  std::istringstream lines(in_lines(xml_of(tool, {"/lib"})));
  for (std::string line; std::getline(lines, line);) {
    if (!usual.contains(line)) out << "  " << line << '\n';
  }
  for (const tdbError& error : tool.GetErrs()) {
    out << "note " << error.code << ": " << error.message << '\n';
  }
  return out.str();
}

TEST(OlderDocuments, AreReadAsTheyWereMeant) {
  tdbToolComponentsDB components("", 1);
  auto* component = new tdbToolComponent(0, "K", "K");
  component->AddItem(new tdbFixedLink(0));
  component->GetItem(0)->SetName("m");
  ASSERT_TRUE(components.AddTool(component, false));
  const std::string text = file_system().Read(TOOLDB_TEST_DATA "/older_tools.xml");
  std::vector<tdbTool*> tools;
  tdbError error(0, "");
  EXPECT_TRUE(tdbXmlReader::ImportFromXml(text.c_str(), {"/lib"}, tools, error, &components))
      << error.message;
  std::string told;
  for (tdbTool* tool : tools) {
    told += told_apart(*tool);
    for (const tdbItem* item : items_below(*tool)) {
      EXPECT_EQ(item->GetUnitOfMeasurement(), tool->GetUnitOfMeasurement());
    }
    delete tool;
  }
  EXPECT_TRUE(matches_golden(told, "older_tools.txt"));
}

// Placements of a holder, as the angles and position that they come to.
struct PoseCase {
  const char* attributes;
  const char* children;
  EulerAngles angles;
  Vec3d<double> origin = {};
};
const PoseCase kPoses[] = {
    {"", "", {}},
    {"POSX='1' POSZ='-2' RY='90'", "", {0, 90, 0}, {1, 0, -2}},
    {"POSX='1'", "<ALPHA>30</ALPHA><TRANS>7 7 7</TRANS>", {}, {1, 0, 0}},
    {"", "<TRANS> 1\t2 3 </TRANS>", {}, {1, 2, 3}},
    {"", "<TRANS>1</TRANS>", {}, {1, 0, 0}},
    {"", "<TRANS>1 2 3</TRANS><ROT TYPE='ZYX'>90 0 30</ROT>", {90, 0, 30}, {1, 2, 3}},
    {"", "<QUAT>0 0 2 2</QUAT>", {90, 0, 0}},
    {"", "<QUAT>1 0 0 0</QUAT>", {0, 0, 180}},
    {"", "<QUAT>0 0 0 0</QUAT><TRANS>1 2 3</TRANS>", {}, {1, 2, 3}},
    {"", "<ALPHA>30</ALPHA><BETA>90</BETA>", {0, 90, 30}},
    {"", "<TRANSFORMATION><TRANS>1 2 3</TRANS></TRANSFORMATION>", {}, {1, 2, 3}},
};
TEST(ItemReader, FindsThePlaceInEveryLayout) {
  for (const PoseCase& row : kPoses) {
    const auto tool = tool_from(tool_with("<HOLDER TYPE='CONE' " + std::string(row.attributes) +
                                          ">" + row.children + "</HOLDER>"));
    const auto pose = tool->GetItem(0)->GetPos();
    const auto expected = join_zyx(row.angles, row.origin);
    for (int i = 0; i < 16; ++i) {
      EXPECT_NEAR(pose(i / 4, i % 4), expected(i / 4, i % 4), 1e-15)
          << row.attributes << row.children;
    }
  }
}

// Nothing writes them, but files that people edit hold them.
TEST(ItemReader, LoneAmpersandsStay) {
  const auto tool = tool_from(
      "<TOOL CODE='<![CDATA[' NAME='&#65;\xC3\xA9&lt;&amp;b & c &' VER='13'><DESCR>a\r\nb & c "
      "&amp; d &lt</DESCR>"
      "<COMMENT>e &<!-- & <![CDATA[ --><![CDATA[& &amp;]]>&gt;&</COMMENT></TOOL>");
  EXPECT_EQ(tool->GetName(), "A\xC3\xA9<&b & c &");
  EXPECT_STREQ(tool->GetDescr(), "a\nb & c & d &lt");
  EXPECT_STREQ(tool->GetComment(), "e && &amp;>&");
}

TEST(ItemReader, ReadsAngleHeadsThoughNoneIsWritten) {
  for (const TypeName& type : kAngleHeadTypes) {
    const auto tool = tool_from(tool_with("<ANGLEHEAD TYPE='" + std::string(type.name) + "'/>"));
    EXPECT_EQ(tool->GetItem(0)->GetType(), type.code) << type.name;
  }
}

}  // namespace
}  // namespace tooldb
