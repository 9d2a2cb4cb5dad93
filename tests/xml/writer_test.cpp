// What the writer makes of parts and tools that no kept document holds: every type code from below
// the first to beyond the last, everything set, empty paths and profiles.

#include "geom/euler_angles.h"
#include "tests/golden.h"
#include "tests/xml/xml_fixture.h"
#include "tooldb/xml/document.h"

namespace tooldb {
namespace {

// What all parts below carry: position (1, -2.5, 1e-7), angles 30, 90 and 0, two parameters, the
// shape turned about Z, and a model file and a profile, whether or not their type has one.
template <class Part>
void furnish(Part& part) {
  part.SetName("Part 7");
  part.SetPos(join_zyx({0, 90, 30}, {1, -2.5, 1e-7}));
  part.SetShapePos(join_zyx({-90, 0, 0}, {0, 0, 1234567}));
  part.RemoveParams();
  part.SetParam("HEIGHT", "12.50");
  part.SetParam("ANGLE", "");
  part.SetMaterial({0.1F, 0.25F, 1.0F, 0.5F, "a b.jpg"});
  part.SetInterferenceSettings({false, 1, 0.125});
  part.SetShapeFilePath(" /lib/a.stl ");
  part.SetFileOptions(" mesh 1 ");
  part.SetFileUnits(1);
  part.SetProfileXml(" <LINE/> ");
}

template <class Part>
std::string of_types(int first, int last) {
  std::string text;
  for (int type = first; type <= last; ++type) {
    Part part(type);
    furnish(part);
    part.WriteXml(text, {});
    if (type == 5 || type == 15) {
      part.SetProfileXml("");
      part.WriteXml(text, {});
      part.SetShapeFilePath(" ");
      part.WriteXml(text, {});
    }
  }
  return text;
}

std::string of_cutting_tool() {
  auto* cutter = new tdbToolCutter();
  cutter->SetName("C");
  tdbCuttingTool tool(cutter, nullptr, 26);
  furnish(tool);
  return xml_of(tool);
}

// As a use and as a definition, of a member and a stranger.
std::string of_component() {
  tdbToolComponent component(0, "Part 7", "K-1");
  furnish(component);
  component.SetVersion(12);
  component.AddItem(new tdbToolHolder(0));
  component.AddItem(new tdbToolHolder(1));
  component.GetItem(0)->SetItemComponent(true);
  const std::string use = xml_of(component);
  component.SetItemComponent(true);
  return use + xml_of(component);
}

std::string of_new_tools() {
  std::string text;
  for (int type = -1; type <= 10; ++type) tdbTool("T1", type).WriteXml(text, {});
  return text;
}

std::string of_a_tool_with_everything_set() {
  tdbTool tool("T1", "Face mill 50");
  tool.SetFlags(1);  // temporary
  tool.SetPos(join_zyx({0, 90, 30}, {1, -2.5, 1e-7}));
  tool.SetDescr("a\nb");
  tool.SetComment(" c ");
  tool.SetOffset(0.1, 1e21, -12.3456789);
  tool.SetDiameter(50);
  tool.SetToolModelTolerance(0.05);
  tool.SetTraceColor(3);
  tool.SetAutoColor(false);
  tool.SetUnitOfMeasurement(2);
  tool.SetSubType(7);
  tool.SetAutoTcp(false);
  tool.EnableSection(true);
  tool.SetSectionStartAngle(12.5);
  tool.SetSectionSpanAngle(0.1);
  tool.SetCutterExtensionEnabled(true);
  tool.SetCutterExtensionValue(0.3);
  tool.SetCutterExtensionStep(0.25);
  tool.SetCutterExtensionMax(2);
  tool.SetParam("Z", "item");
  tool.AddParam("Z", "item");
  tool.AddParam("Z", "list");
  tool.AddParam("A", "");
  tool.AddOffsetParam({7, 1, 2, -3.25, 0.5, 4, true});
  tool.AddOffsetParam({8});
  return xml_of(tool);
}

TEST(Writer, WritesAsKept) {
  std::string text;
  append_document_header(text, -3);
  text += of_types<tdbToolCutter>(-1, 24) + of_types<tdbToolShank>(-1, 17) +
          of_types<tdbToolHolder>(0, 5) + of_types<tdbToolHolder>(100, 100) +
          of_types<tdbFixedLink>(7, 7) + of_types<tdbToolAngleHead>(2, 2) + of_cutting_tool() +
          of_component() + of_new_tools() + of_a_tool_with_everything_set();
  append_document_footer(text);
  EXPECT_TRUE(matches_golden(text, "written.xml"));
}

TEST(Writer, ReplacesTheTextOfInterference) {
  std::string text = "left over";
  tdbFixedLink(0).WriteInterfSettingsXml(text);
  EXPECT_EQ(text, "INTERF_INH=\"TRUE\" INTERF_TYPE=\"ALLOWED_INTERF\" INTERF_VAL=\"0\"");
}

}  // namespace
}  // namespace tooldb
