#include <gmock/gmock.h>

#include <array>

#include "filters/freecad_shapes.h"
#include "tests/filters/import_reports.h"
#include "tooldb/tool_makers.h"

namespace tooldb {
namespace {

using testing::HasSubstr;

struct BitCase {
  std::string_view name, file, type, code, cutter;
  int inches;
  double diameter, length, shank;
  int flutes;
  std::string_view approximated;  ///< part of a note; empty: nothing is approximated but marks
};

const BitCase kBits[] = {
    {"EndMill", "nibbler-v1-2/Bit/1_2in 2FL COMP End Mill TAC 1.250 loc 3.000 oal.fctb",
     "MILL_FLATEND", "1_2in 2FL COMP End Mill TAC 1.250 loc 3.000 oal", "DIAMETER=0.5 HEIGHT=1.25",
     1, 0.5, 1.5, 1.75, 2, ""},
    {"BallEnd", "nibbler-v1-2/Bit/1_4in 2 Flute Upcut Ball Nose Mill 0.7500 loc 2.500 oal.fctb",
     "MILL_BULLNOSE", "1_4in 2 Flute Upcut Ball Nose Mill 0.7500 loc 2.500 oal",
     "DIAMETER=0.25 FILLET=0.125 HEIGHT=0.75 SPHERIC_TCPTYPE=0", 1, 0.25, 1.25, 1.75, 2, ""},
    {"BullNose", "nibbler-v1-2/Bit/3_4in Bowl & Tray Bit 0.625 loc 2.375 oal.fctb", "MILL_BULLNOSE",
     "3_4in Bowl \uFF06 Tray Bit 0.625 loc 2.375 oal",
     "DIAMETER=0.75 FILLET=0.25 HEIGHT=0.625 SPHERIC_TCPTYPE=0", 1, 0.75, 1, 1.75, 2, ""},
    {"VBit", "nibbler-v1-2/Bit/1_2in 60 V-Groove Bit 0.4375 loc 2.000 oal.fctb", "MILL_CHAMFER1",
     "1_2in 60 V-Groove Bit 0.4375 loc 2.000 oal",
     "ANGLE=30 DIAMETER=0.5 DIAMETER1=0 HEIGHT=0.4375", 1, 0.5, 1.125, 1.5625, 2, ""},
    {"VBitHigherThanItsEdge", "loobric/Bit/test_vbit_60deg.fctb", "MILL_CHAMFER1", "test-vbit-60",
     "ANGLE=30 DIAMETER=12.7 DIAMETER1=0 HEIGHT=10.9985226281", 0, 12.7, 50, 39.0014773719, 4,
     "cutting length 10 raised"},
    {"RoundOver", "nibbler-v1-2/Bit/1_2in Point Roundover, 1_4in R 0.500 loc 2.000 oal.fctb",
     "MILL_CORNER_ROUNDING", "1_2in Point Roundover, 1_4in R 0.500 loc 2.000 oal",
     "DIAMETER=0.5 DIAMETER1=4e-06 FILLET=0.25 HEIGHT=0.5 HEIGHT1=0", 1, 0.5, 1.125, 1.5, 2, ""},
    {"TaperedBall", "nibbler-v1-2/Bit/1_8in 4 Flute Tapered Ball Nose 0.8750 loc 2.500 oal.fctb",
     "MILL_STANDARD", "1_8in 4 Flute Tapered Ball Nose 0.8750 loc 2.500 oal",
     "ANGLE=5.5 ANGLE1=0 DIAMETER=0.113542005807 FILLET=0.0625 HEIGHT=0.708585227228 "
     "STANDARD_TCPTYPE=0",
     1, 0.113542005807, 1.5, 1.791414772772, 4, "included angle"},
    {"Drill", "loobric/Bit/test_drill_5mm.fctb", "DRILL", "test-drill-5mm",
     "ANGLE=118 DIAMETER=5 HEIGHT=50", 0, 5, 50, 0, 4, "whole length cuts"},
    {"FlutesAsText", "loobric/Bit/test_endmill_6mm.fctb", "MILL_FLATEND", "test-endmill-6mm",
     "DIAMETER=6 HEIGHT=20", 0, 6, 60, 40, 2, ""},
    {"Probe", "btl/Bit/08f40ae8-2997-11ee-9a1e-8d3dec022611.fctb", "PROBE", "New Probe",
     "DIAMETER=6 SPHERIC_TCPTYPE=0", 0, 6, 50, 44.7639320225, 4, ""},
    {"Dovetail", "btl/Bit/2a2863e0-2996-11ee-9a1e-8d3dec022611.fctb", "MILL_2DPROFILE",
     "New Dovetail", "", 0, 20.5, 63, 58, 4, "angle between flank and bottom"},
    {"DecimalCommaAndStickout", "btl/Bit/4f1877a0-2999-11ee-9a1e-8d3dec022611.fctb",
     "MILL_BULLNOSE", "New Torus", "DIAMETER=5 FILLET=1 HEIGHT=30 SPHERIC_TCPTYPE=0", 0, 5, 33, 20,
     1, ""},
    {"StickoutInCentimetres", "btl/Bit/fd6e7498-2292-11ee-bac0-d3407e618046.fctb", "MILL_FLATEND",
     "2,5mm uncoated aluminium dual flute HRC50", "DIAMETER=1 HEIGHT=7", 0, 1, 10, 33, 2, ""},
};

class RealBit : public testing::TestWithParam<BitCase> {};

TEST_P(RealBit, BecomesATool) {
  const BitCase& expected = GetParam();
  ImportResult result = import_sample("freecad/" + std::string(expected.file));
  check_import(result);
  ASSERT_EQ(result.entries.size(), 1U);
  const ImportEntry& entry = result.entries.front();
  ASSERT_TRUE(entry.tool);
  EXPECT_EQ(entry.tool->GetCode(), expected.code);
  EXPECT_EQ(entry.tool->GetUnitOfMeasurement(), expected.inches);
  EXPECT_NEAR(entry.tool->GetDiameter(), expected.diameter, 1e-9);
  EXPECT_NEAR(entry.tool->GetLength(), expected.length, 1e-9);
  EXPECT_EQ(entry.tool->GetCutCond().GetNumberOfInsert(), expected.flutes);
  tdbCuttingTool* cutting = cutting_tool(entry);
  ASSERT_NE(cutting, nullptr);
  EXPECT_EQ(cutting->GetTypeName(), expected.type);
  EXPECT_EQ(dimensions(*cutting->GetCutter()), expected.cutter);
  ASSERT_EQ(cutting->GetShank() != nullptr, expected.shank > 0);
  if (expected.shank > 0) {
    EXPECT_NEAR(cutting->GetShank()->GetLength(), expected.shank, 1e-4);
  }
  EXPECT_TRUE(has_note(entry, NoteKind::kMapped));
  EXPECT_TRUE(has_note(entry, NoteKind::kKept, "FREECAD.shape"));
  if (!expected.approximated.empty()) {
    EXPECT_TRUE(has_note(entry, NoteKind::kApproximated, expected.approximated));
  }
}

INSTANTIATE_TEST_SUITE_P(FreeCad, RealBit, testing::ValuesIn(kBits),
                         [](const auto& row) { return std::string(row.param.name); });

/// A bit of the given shape and parameters, as format 2 has it.
std::string bit(const std::string& shape, const std::string& parameters) {
  return R"({"version": 2, "name": "A bit", "shape": ")" + shape + R"(", "parameter": {)" +
         parameters + "}}";
}

ImportEntry import_bit(const std::string& shape, const std::string& parameters) {
  ImportResult result = import_text(bit(shape, parameters), "a-bit.fctb");
  check_import(result);
  EXPECT_EQ(result.entries.size(), 1U);
  return std::move(result.entries.front());
}

struct ShapeCase {
  std::string_view name, shape, parameters, type, cutter;
};

const ShapeCase kShapes[] = {
    {"PathOfAnotherMachine", R"(C:\\Users\\me\\endmill.fcstd)",
     R"("Diameter": "6 mm", "CuttingEdgeHeight": "9 mm")", "MILL_FLATEND", "DIAMETER=6 HEIGHT=9"},
    {"FlatRadius", "bullnose.fcstd",
     R"("Diameter": "6 mm", "CuttingEdgeHeight": "9 mm", "FlatRadius": "1.5 mm")", "MILL_BULLNOSE",
     "DIAMETER=6 FILLET=1.5 HEIGHT=9 SPHERIC_TCPTYPE=0"},
    {"RadiusAboveHalfTheDiameter", "bullnose.fcstd",
     R"("Diameter": "6 mm", "CuttingEdgeHeight": "9 mm", "CornerRadius": "4 mm")", "MILL_BULLNOSE",
     "DIAMETER=6 FILLET=3 HEIGHT=9 SPHERIC_TCPTYPE=0"},
    {"BallBelowTheDiameter", "ballend.fcstd",
     R"("Diameter": "6 mm", "CuttingEdgeHeight": "9 mm", "TipRadius": "1 mm")", "MILL_BULLNOSE",
     "DIAMETER=6 FILLET=1 HEIGHT=9 SPHERIC_TCPTYPE=0"},
    {"Chamfer", "chamfer.fcstd",
     R"("Diameter": "12 mm", "CuttingEdgeHeight": "6 mm", "CuttingEdgeAngle": 90,
        "TipDiameter": "2 mm")",
     "MILL_CHAMFER1", "ANGLE=45 DIAMETER=12 DIAMETER1=2 HEIGHT=6"},
    {"VBitWithoutAngle", "v_bit.fcstd", R"("Diameter": "12 mm", "CuttingEdgeHeight": "6 mm")",
     "MILL_CHAMFER1", "ANGLE=45 DIAMETER=12 DIAMETER1=0 HEIGHT=6"},
    {"Reamer", "reamer.fcstd", R"("Diameter": "8 mm", "Length": "100 mm")", "DRILL",
     "ANGLE=180 DIAMETER=8 HEIGHT=100"},
    {"TapWithInchMarks", "tap.fcstd",
     R"("Diameter": "0.375 \"", "CuttingEdgeLength": "1.063 \"", "Pitch": "0.000 in",
        "TipAngle": "90.000 °")",
     "TAP", "DIAMETER=0.375 DIAMETER1=0 HEIGHT=1.063 HEIGHT1=0.1875"},
    {"TapWithPitch", "tap.fcstd",
     R"("Diameter": "8 mm", "CuttingEdgeLength": "20 mm", "Pitch": "1 mm")", "TAP",
     "DIAMETER=8 DIAMETER1=6.7731 HEIGHT=20 HEIGHT1=2 PITCH=1"},
    {"ThreadMill", "thread-mill.fcstd",
     R"("Diameter": "5 mm", "cuttingAngle": "60 °", "Crest": "0.1 mm", "NeckDiameter": "3 mm")",
     "MILL_2DPROFILE", ""},
    {"SlittingSaw", "slittingsaw.fcstd", R"("Diameter": "76 mm", "BladeThickness": "3 mm")", "DISC",
     "DIAMETER=76 FILLET=0 HEIGHT=3"},
    {"Fillet", "fillet.fcstd",
     R"("Diameter": "16 mm", "CuttingEdgeHeight": "8 mm", "CuttingRadius": "4 mm",
        "TipDiameter": "6 mm")",
     "MILL_CORNER_ROUNDING", "DIAMETER=16 DIAMETER1=6 FILLET=4 HEIGHT=8 HEIGHT1=0"},
    {"InsertByLetter", "Iso_shape_T.fcstd", R"("EdgeLength": "11 mm", "TipRadius": "0.4 mm")",
     "TURNING_INSERT_T",
     "ANGLE=60 DIAMETER=6.35085296109 FILLET=0.4 HEIGHT=4.76 INSERT_SHAPE=T LENGTH=11"},
    {"InsertByAngle", "isoshape.fcstd",
     R"("EdgeLength": "6.35 mm", "TipAngle": "90 °", "TipRadius": "0.4 mm")",
     "TURNING_INSERT_ROMBOID",
     "ANGLE=90 DIAMETER=6.35 FILLET=0.4 HEIGHT=4.76 INSERT_SHAPE=S LENGTH=6.35"},
    {"Unknown", "corkscrew.fcstd", R"("Diameter": "8 mm")", "MILL_2DPROFILE", ""},
};

class BitShapes : public testing::TestWithParam<ShapeCase> {};

TEST_P(BitShapes, BecomesItsCutter) {
  const ShapeCase& expected = GetParam();
  const ImportEntry entry =
      import_bit(std::string(expected.shape), std::string(expected.parameters));
  tdbCuttingTool* cutting = cutting_tool(entry);
  ASSERT_NE(cutting, nullptr);
  EXPECT_EQ(cutting->GetTypeName(), expected.type);
  EXPECT_EQ(dimensions(*cutting->GetCutter()), expected.cutter);
}

INSTANTIATE_TEST_SUITE_P(FreeCad, BitShapes, testing::ValuesIn(kShapes),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(FreeCadBit, EveryShapeIsAsLongAsItsFileSays) {
  for (const char* shape :
       {"endmill", "ballend", "bullnose", "torus", "chamfer", "vbit", "drill", "reamer", "tap",
        "thread_mill", "dovetail", "radius", "slittingsaw", "taperedballnose", "probe"}) {
    SCOPED_TRACE(shape);
    const ImportEntry entry =
        import_bit(std::string(shape) + ".fcstd",
                   R"("Diameter": "0.5 in", "Length": "3 in", "ShankDiameter": "0.375 in",
           "CuttingEdgeHeight": "1 in", "CuttingEdgeLength": "1 in", "CornerRadius": "0.1 in",
           "CuttingEdgeAngle": "60 °", "TipAngle": "118 °", "CuttingRadius": "0.1 in",
           "TipDiameter": "0.1 in", "NeckDiameter": "0.25 in", "NeckLength": "0.5 in",
           "CuttingAngle": "60 °", "Crest": "0.01 in", "DovetailHeight": "0.2 in",
           "BladeThickness": "0.125 in", "TaperAngle": "10 °", "ShaftDiameter": "0.2 in")");
    tdbCuttingTool* cutting = cutting_tool(entry);
    ASSERT_NE(cutting, nullptr);
    EXPECT_FALSE(has_note(entry, NoteKind::kApproximated, "drawn as a cylinder"));
    EXPECT_EQ(entry.tool->GetUnitOfMeasurement(), 1);
    ASSERT_NE(cutting->GetShank(), nullptr);
    const double joint =
        cutting->GetShank()->GetAbsPos()(2, 3) - entry.tool->GetAbsPosCutter(0)(2, 3);
    EXPECT_NEAR(joint + cutting->GetShank()->GetLength(), 3, 1e-4);
  }
}

TEST(FreeCadBit, ConvertsWhatIsNotInTheUnitOfTheDiameter) {
  const ImportEntry entry = import_bit(
      "endmill.fcstd", R"("Diameter": "6 mm", "CuttingEdgeHeight": "0.5 in", "Length": "5 cm")");
  EXPECT_EQ(entry.tool->GetUnitOfMeasurement(), 0);
  EXPECT_EQ(dimensions(*cutting_tool(entry)->GetCutter()), "DIAMETER=6 HEIGHT=12.7");
  EXPECT_NEAR(entry.tool->GetLength(), 50, 1e-9);
}

TEST(FreeCadBit, ANumberWithoutAUnitBesideInchesIsMillimetresAndSuspicious) {
  const ImportEntry entry =
      import_bit("endmill.fcstd", R"("Diameter": "0.125 in ", "CuttingEdgeHeight": "0.5 ")");
  EXPECT_EQ(dimensions(*cutting_tool(entry)->GetCutter()), "DIAMETER=0.125 HEIGHT=0.0196850393701");
  EXPECT_TRUE(has_note(entry, NoteKind::kApproximated, "CuttingEdgeHeight"));
}

TEST(FreeCadBit, KeepsWhatHasNoPlace) {
  const ImportResult result =
      import_sample("freecad/btl/Bit/f1f77e26-e835-11ed-be20-6f7d77f4e72c.fctb");
  const tdbTool& tool = *result.entries.at(0).tool;
  EXPECT_STREQ(tool.GetParamValue("FREECAD.Material"), "HSS");
  EXPECT_STREQ(tool.GetParamValue("FREECAD.attribute.btl-coating"), "co");
  EXPECT_STREQ(tool.GetDescr(), "2,5mm dual flute ball nose");
}

TEST(FreeCadBit, KeepsItsOwnNumbersWhereTheyAreNotDrawnAsTheyStand) {
  const ImportResult raised = import_sample("freecad/loobric/Bit/test_vbit_60deg.fctb");
  EXPECT_STREQ(raised.entries.at(0).tool->GetParamValue("FREECAD.CuttingEdgeHeight"), "10.00 mm");
  const ImportResult exact = import_sample("freecad/loobric/Bit/test_endmill_6mm.fctb");
  EXPECT_EQ(exact.entries.at(0).tool->GetParamIndex("FREECAD.CuttingEdgeHeight"), -1);
}

TEST(FreeCadBit, AChiploadIsTheChipThicknessToAimAt) {
  const ImportEntry entry =
      import_bit("endmill.fcstd", R"("Diameter": "0.5 in", "Chipload": "0.004 in")");
  EXPECT_NEAR(entry.tool->GetCutCond().GetOptimChipThickness().optimal, 0.1016, 1e-12);
  EXPECT_NEAR(entry.tool->GetCutCond().GetDc(), 12.7, 1e-12);
}

TEST(FreeCadBit, BadFilesAreToldApart) {
  const std::pair<const char*, const char*> kCases[] = {
      {"<!DOCTYPE html><html></html>", "web page"},
      {"{\"shape\": \"a\", \"parameter\": ", "not valid JSON: parse error at line 1"},
      {"", "empty"},
      {"[1, 2]", "no tool bit"},
      {"{}", "no tool bit"},
  };
  for (const auto& [text, problem] : kCases) {
    const ImportResult result = import_text(text, "x.fctb");
    ASSERT_EQ(result.entries.size(), 1U) << text;
    EXPECT_TRUE(has_note(result.entries[0], NoteKind::kFailed, problem)) << text;
  }
}

TEST(FreeCadLibrary, ImportsItsBitsAndListsThoseThatAreMissing) {
  const ImportResult result = import_sample("freecad/nibbler-v1-2/Library/NibblerBOT.fctl");
  check_import(result);
  std::size_t tools = 0;
  for (const ImportEntry& entry : result.entries) {
    if (entry.tool) {
      ++tools;
    } else {
      EXPECT_TRUE(has_note(entry, NoteKind::kAbsent, "not beside the library")) << entry.source;
    }
  }
  EXPECT_EQ(tools, 14U);
  EXPECT_EQ(result.siblings.size(), 14U);
  EXPECT_EQ(result.entries.size(), 28U);
}

TEST(FreeCadLibrary, TheNumberIsTheOffsetRegister) {
  const ImportResult result = import_sample("freecad/loobric/Library/test_library.fctl");
  ASSERT_EQ(result.entries.size(), 3U);
  const tdbTool& tool = *result.entries[1].tool;
  ASSERT_EQ(tool.GetOffsetParamCount(), 1);
  EXPECT_EQ(tool.GetOffsetParam(0).index, 2);
  EXPECT_EQ(tool.GetOffsetParam(0).RAD, 3);
  EXPECT_STREQ(tool.GetParamValue("FREECAD.nr"), "2");
}

TEST(FreeCadLibrary, ReadsNothingOutsideItsFolders) {
  std::vector<std::string> asked;
  const auto watch = [&asked](const std::string& path) -> std::optional<std::string> {
    asked.push_back(path);
    return std::nullopt;
  };
  const ImportResult result = import_tools(
      R"({"tools": [{"nr": 1, "path": "/etc/a.fctb"}, {"nr": 2, "path": "../../a.fctb"},
                    {"nr": 3, "path": "C:\\a.fctb"}, {"nr": 4, "path": "x/../../a.fctb"},
                    {"nr": 5}, 6, {"nr": 7, "path": "sub\\a.fctb"}]})",
      "x.fctl", watch);
  EXPECT_EQ(result.entries.size(), 7U);
  EXPECT_THAT(asked, testing::ElementsAre("../Bit/sub/a.fctb", "sub/a.fctb"));
}

TEST(FreeCadHolder, BecomesAComponentWithItsOutline) {
  const ImportResult result = import_text(
      R"({"version": 1, "name": "Nut \"A\"", "units": "mm", "notes": "measure yours",
          "profile": [[0, 0], [16.1, 0], [17.5, 1.4], [17.5, 19], [0, 19]]})",
      "ER20.fcholder");
  check_import(result);
  ASSERT_TRUE(result.entries.at(0).component);
  tdbToolComponent& component = *result.entries[0].component;
  EXPECT_EQ(component.GetCode(), "ER20");
  EXPECT_TRUE(component.IsComponent());
  tdbItem* holder = component.GetItem(0U);
  EXPECT_TRUE(holder->IsComponent());
  EXPECT_EQ(holder->GetName(), "Nut \uFF02A\uFF02");
  EXPECT_STREQ(holder->GetParam("FREECAD.notes", ""), "measure yours");
  EXPECT_EQ(dynamic_cast<tdbToolHolder&>(*holder).GetLength(), 19);
  EXPECT_THAT(std::string(holder->GetProfileXml()),
              HasSubstr("<LINE><START>0 0</START><END>16.1 0</END></LINE>"));
}

}  // namespace
}  // namespace tooldb
