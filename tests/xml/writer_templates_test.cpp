// The writer against the format's own templates, filled in by snprintf.

#include <array>
#include <cstdarg>
#include <cstdio>

#include "geom/euler_angles.h"
#include "tests/xml/golden_documents.h"
#include "tooldb/xml/document.h"

namespace tooldb {
namespace {

__attribute__((format(printf, 1, 2))) std::string filled(const char* format, ...) {
  std::array<char, 2000> text{};
  va_list values;
  va_start(values, format);
  const int size = std::vsnprintf(text.data(), text.size(), format, values);
  va_end(values);
  return {text.data(), static_cast<std::size_t>(size)};
}

// What all parts below carry: position (1, -2.5, 1e-7), angles 30, 90 and 0, two parameters, the
// shape turned about Z.
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
}

constexpr char kPose[] = "POSX=\"1\" POSY=\"-2.5\" POSZ=\"1e-07\" RZ=\"0\" RY=\"90\" RX=\"30\"";
constexpr char kInterference[] =
    "INTERF_INH=\"FALSE\" INTERF_TYPE=\"NEAR_MISS\" INTERF_VAL=\"0.125\"";
constexpr char kParameters[] = "<ANGLE></ANGLE>\n<HEIGHT>12.50</HEIGHT>\n";
constexpr char kColor[] = "<COLOR ENVMAP=\"a b.jpg\" TRANSPARENCY=\"0.5\">0.1 0.25 1</COLOR>";
constexpr char kShapePose[] =
    "<SHAPE_POSE >\n<TRANS>0 0 1.23457e+06</TRANS>\n<ROT TYPE=\"ZYX\">-90 -0 0</ROT>\n"
    "</SHAPE_POSE>\n";
constexpr char kProfilePose[] =
    "<T_PROFILE >\n<TRANS>0 0 0</TRANS>\n<ROT TYPE=\"ZYX\">0 -0 0</ROT>\n</T_PROFILE>\n";

std::string cutter_with(const char* type, const std::string& geometry) {
  return filled("<CUTTER  TYPE=\"%s\" VER=\"%d\" %s  NAME=\"%s\"  PARENT=\"%s\" %s>", type, 4,
                kPose, "Part 7", "", kInterference) +
         kParameters + geometry + kColor + kProfilePose + kShapePose + "</CUTTER>\n";
}
std::string shank_with(const char* type, const std::string& geometry) {
  return filled("<SHANK  TYPE=\"%s\" VER=\"%d\" %s NAME=\"%s\" PARENT=\"%s\" %s>", type, 4, kPose,
                "Part 7", "", kInterference) +
         kParameters + geometry + kShapePose + kColor + "</SHANK>\n";
}
std::string holder_with(const char* type, const char* spinning, const std::string& geometry) {
  return filled("<HOLDER  TYPE=\"%s\" VER=\"%d\" ENSPIN=\"%s\" %s NAME=\"%s\" PARENT=\"%s\" %s>",
                type, 5, spinning, kPose, "Part 7", "", kInterference) +
         kParameters + geometry + kColor + kShapePose + "</HOLDER>\n";
}

template <class Part>
Part furnished(int type) {
  Part part(type);
  furnish(part);
  part.SetShapeFilePath(" /lib/a.stl ");
  part.SetFileOptions(" mesh 1 ");
  part.SetFileUnits(1);
  part.SetProfileXml(" <LINE/> ");
  return part;
}

constexpr char kFile[] = "<FILE UNIT=\"INCHES\">/lib/a.stl</FILE>";
constexpr char kOptions[] = "<FILE_OPTIONS>mesh 1</FILE_OPTIONS>";
constexpr char kProfile[] = "<PROFILE><LINE/></PROFILE>";

// Every type code from below the first to beyond the last, with the name and geometry it writes.
struct TypeCase {
  int code;
  const char* name;
  enum Geometry { kNone, kModel, kText, kBoth } geometry = kNone;
};

std::string geometry_of(TypeCase::Geometry geometry, const std::string& line_end) {
  std::string text;
  if (geometry == TypeCase::kModel || geometry == TypeCase::kBoth)
    text += kFile + line_end + kOptions;
  if (geometry == TypeCase::kText || geometry == TypeCase::kBoth) text += kProfile + line_end;
  return text;
}

TEST(WriterTemplates, CuttersOfEveryType) {
  const TypeCase rows[] = {{-1, "CUSTOM_REVOLUTED"},
                           {0, "FLAT"},
                           {1, "SPHERIC"},
                           {2, "SEMISPHERIC"},
                           {3, "STANDARD"},
                           {4, "DRILL"},
                           {5, "CUSTOM_REVOLUTED", TypeCase::kText},
                           {6, "STL", TypeCase::kModel},
                           {7, "TURNING_INSERT"},
                           {8, "TURNING_EXTRUDED", TypeCase::kText},
                           {9, "SMUSSO1"},
                           {10, "SMUSSO2"},
                           {11, "BARENO1"},
                           {12, "CORNER_ROUNDING"},
                           {13, "TAP"},
                           {14, "PIECEWISE"},
                           {15, "TURNING_STL", TypeCase::kBoth},
                           {16, "DISC"},
                           {17, "ROUND"},
                           {18, "ROUND_DIAMETER"},
                           {19, "DISC_DRILL"},
                           {20, "CUSTOM_REVOLUTED"},
                           {21, "CUSTOM_REVOLUTED"},
                           {22, "DISC2"},
                           {23, "STANDARD2"},
                           {24, "CUSTOM_REVOLUTED"}};
  for (const TypeCase& row : rows)
    EXPECT_EQ(xml_of(furnished<tdbToolCutter>(row.code)),
              cutter_with(row.name, geometry_of(row.geometry, "\n")));
}

TEST(WriterTemplates, ShanksOfEveryType) {
  const TypeCase rows[] = {{-1, "CUSTOM_REVOLUTED"},
                           {0, "CYLINDER"},
                           {1, "CONE"},
                           {2, "CUSTOM_REVOLUTED", TypeCase::kText},
                           {3, "STL", TypeCase::kModel},
                           {4, "CUSTOM_REVOLUTED"},
                           {5, "CUSTOM_EXTRUDED", TypeCase::kText},
                           {6, "SMUSSO1"},
                           {7, "SMUSSO2"},
                           {8, "BARENO1"},
                           {9, "CORNER_ROUNDING"},
                           {10, "TAP"},
                           {11, "DISC"},
                           {12, "ROUND"},
                           {13, "ROUND_DIAMETER"},
                           {14, "DISC_DRILL"},
                           {15, "DISC2"},
                           {16, "STANDARD2"},
                           {17, "CUSTOM_REVOLUTED"}};
  for (const TypeCase& row : rows)
    EXPECT_EQ(xml_of(furnished<tdbToolShank>(row.code)),
              shank_with(row.name, geometry_of(row.geometry, "")));
}

TEST(WriterTemplates, HoldersOfEveryType) {
  const TypeCase rows[] = {{0, "CYLINDER"},
                           {1, "CONE"},
                           {2, "CUSTOM_REVOLUTED", TypeCase::kText},
                           {3, "STL", TypeCase::kModel},
                           {4, "CUSTOM_EXTRUDED", TypeCase::kText},
                           {5, "CUSTOM_REVOLUTED"},
                           {100, "CUSTOM_REVOLUTED"}};
  for (const TypeCase& row : rows)
    EXPECT_EQ(
        xml_of(furnished<tdbToolHolder>(row.code)),
        holder_with(row.name, row.code == 2 ? "TRUE" : "FALSE", geometry_of(row.geometry, "")));
}

TEST(WriterTemplates, AnEmptyPathOrProfileLeavesItsBlockOut) {
  auto cutter = furnished<tdbToolCutter>(15);
  cutter.SetProfileXml("");
  EXPECT_EQ(xml_of(cutter), cutter_with("TURNING_STL", std::string(kFile) + "\n" + kOptions +
                                                           "<PROFILE></PROFILE>\n"));
  cutter.SetShapeFilePath(" ");
  EXPECT_EQ(xml_of(cutter), cutter_with("TURNING_STL", ""));
  auto shank = furnished<tdbToolShank>(5);
  shank.SetProfileXml("");
  EXPECT_EQ(xml_of(shank), shank_with("CUSTOM_EXTRUDED", ""));
}

TEST(WriterTemplates, LinkAndHead) {
  tdbFixedLink link(7);
  furnish(link);
  EXPECT_EQ(xml_of(link),
            filled("<FIXEDLINK  TYPE=\"%s\" VER=\"%d\" %s NAME=\"%s\" PARENT=\"%s\" %s>",
                   "TRANSFORMATION", 3, kPose, "Part 7", "", kInterference) +
                kParameters + kColor + kShapePose + "</FIXEDLINK>\n");
  EXPECT_EQ(xml_of(tdbToolAngleHead(2)), "");
}

TEST(WriterTemplates, CuttingToolHoldsItsParts) {
  auto cutter = std::make_unique<tdbToolCutter>();
  cutter->SetName("C");
  tdbCuttingTool tool(cutter.release(), nullptr, 26);
  furnish(tool);
  EXPECT_EQ(xml_of(tool),
            filled("<CUTTINGTOOL VER=\"%d\" TYPE=\"%s\" %s NAME=\"%s\" PARENT=\"%s\">", 1,
                   "MILL_STANDARD2", kPose, "Part 7", "") +
                kParameters + xml_of(*tool.GetCutter()) + "</CUTTINGTOOL>\n");
  EXPECT_NE(xml_of(tool).find("  NAME=\"C\"  PARENT=\"Part 7\" "), std::string::npos);
}

TEST(WriterTemplates, ComponentAsUseAndAsDefinition) {
  tdbToolComponent component(0, "Part 7", "K-1");
  furnish(component);
  component.SetVersion(12);
  auto member = std::make_unique<tdbToolHolder>(0);
  auto stranger = std::make_unique<tdbToolHolder>(0);
  member->SetItemComponent(true);
  component.AddItem(member.release());
  component.AddItem(stranger.release());
  EXPECT_EQ(xml_of(component),
            filled("<TOOLCOMPONENT CODE=\"%s\" VER=\"%d\" %s NAME=\"%s\" PARENT=\"%s\">"
                   "</TOOLCOMPONENT>\n",
                   "K-1", 12, kPose, "Part 7", ""));
  component.SetItemComponent(true);
  EXPECT_EQ(xml_of(component), filled("<TOOLCOMPONENT VER=\"%d\" %s NAME=\"%s\" PARENT=\"%s\">", 12,
                                      kPose, "Part 7", "") +
                                   xml_of(*component.GetItem(0)) + "</TOOLCOMPONENT>\n");
}

// The conditions of a new tool: what stands behind the length option of a kept document.
std::string conditions_in(const char* document) {
  const std::string text = golden_bytes(document);
  const auto begin = text.find("<CUTCOND ");
  return text.substr(begin, text.rfind("</TOOL>") - begin);
}

constexpr char kToolStart[] =
    "<TOOL NAME=\"%s\" POSX=\"%g\" POSY=\"%g\" POSZ=\"%g\" RZ=\"%g\" RY=\"%g\" RX=\"%g\" "
    "TEMP=\"%s\" OPT_OFFSET=\"%g\" OFFSETX=\"%g\" OFFSETY=\"%g\" OFFSETZ=\"%g\" DIAMETER=\"%g\" "
    "VER=\"%d\" TOLERANCE=\"%g\" TYPE=\"%s\" TRACECOLOR=\"%s\" AUTOTRACECOLOR=\"%s\" UNITS=\"%s\" "
    "CUTTER_TYPE=\"%s\" AUTO_TCP=\"%s\" SEC=\"%s\" SEC_START=\"%s\" SEC_SPAN=\"%s\">\n";

struct ToolTypeCase {
  int code;
  const char* name;
  const char* conditions = "new_milling_tool";
};

TEST(WriterTemplates, NewToolsOfEveryType) {
  const ToolTypeCase rows[] = {{-1, "PROBE"},
                               {0, "MILL"},
                               {1, "DRILL"},
                               {2, "PROBE"},
                               {3, "TURNING", "new_turning_tool"},
                               {4, "PROBE"},
                               {5, "TAP"},
                               {6, "DISC"},
                               {7, "FACE_MILLING"},
                               {8, "SHOULDER_MILLING"},
                               {9, "BORE", "new_turning_tool"},
                               {10, "PROBE"}};
  for (const ToolTypeCase& row : rows)
    EXPECT_EQ(
        xml_of(tdbTool("T1", row.code)),
        filled(kToolStart, "Tool", 0.0, 0.0, 0.0, 0.0, -0.0, 0.0, "FALSE", -0.1, 0.0, 0.0, 0.0, 0.0,
               13, 0.1, row.name, "19", "TRUE", "MM", "MILL", "TRUE", "FALSE", "0", "180") +
            "<DESCR></DESCR>\n<COMMENT></COMMENT>\n"
            "<TOOL_LENGHT_OPT  STEP=\"0.100000\" MAX=\"1.000000\">FALSE</TOOL_LENGHT_OPT>" +
            conditions_in(row.conditions) + "</TOOL>\n");
}

TEST(WriterTemplates, AToolWithEverythingSet) {
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
  EXPECT_EQ(xml_of(tool),
            filled(kToolStart, "Face mill 50", 1.0, -2.5, 1e-7, 0.0, 90.0, 30.0, "FALSE", 0.3, 0.1,
                   1e21, -12.3456789, 50.0, 13, 0.05, "MILL", "3", "FALSE", "INCHES",
                   "FACE_MILLING", "FALSE", "TRUE", "12.5", "0.1") +
                "<DESCR>a\nb</DESCR>\n<COMMENT> c </COMMENT>\n<PARAM NAME=\"Z\">item</PARAM>\n"
                "<PARAM NAME=\"Z\">list</PARAM>\n<PARAM NAME=\"A\"></PARAM>\n"
                "<OFFSET_PARAM  NUM=\"7\" DX=\"1.000000\" DY=\"2.000000\" DZ=\"-3.250000\" "
                "RAD=\"0.500000\" POS=\"4\" ABS=\"1\"></OFFSET_PARAM>"
                "<OFFSET_PARAM  NUM=\"8\" DX=\"0.000000\" DY=\"0.000000\" DZ=\"0.000000\" "
                "RAD=\"0.000000\" POS=\"0\" ABS=\"0\"></OFFSET_PARAM>"
                "<TOOL_LENGHT_OPT  STEP=\"0.250000\" MAX=\"2.000000\">TRUE</TOOL_LENGHT_OPT>" +
                conditions_in("new_milling_tool") + "</TOOL>\n");
}

TEST(WriterTemplates, InterferenceReplacesItsArgument) {
  tdbFixedLink link(0);
  std::string text = "left over";
  link.WriteInterfSettingsXml(text);
  EXPECT_EQ(text, "INTERF_INH=\"TRUE\" INTERF_TYPE=\"ALLOWED_INTERF\" INTERF_VAL=\"0\"");
  link.SetInterferenceSettings({true, 2, 1234567});
  link.WriteInterfSettingsXml(text);
  EXPECT_EQ(text, "INTERF_INH=\"TRUE\" INTERF_TYPE=\"ALLOWED_INTERF\" INTERF_VAL=\"1.23457e+06\"");
}

TEST(WriterTemplates, DocumentHeadAndFoot) {
  std::string text = "kept";
  append_document_header(text, -3);
  append_document_footer(text);
  EXPECT_EQ(text,
            "kept<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<TOOLDB VER=\"-3\">\n</TOOLDB>\n");
}

}  // namespace
}  // namespace tooldb
