#include <gtest/gtest.h>

#include "filters/fusion_types.h"
#include "tests/filters/import_reports.h"
#include "tests/geom/row_name.h"

// What becomes of the dimensions that each kind of tool has in its file.

namespace tooldb {
namespace {

/// A bit of the given shape and parameters, as format 2 has it.
std::string bit(const std::string& shape, const std::string& parameters) {
  return R"({"version": 2, "name": "A bit", "shape": ")" + shape + R"(.fcstd", "parameter": {)" +
         parameters + "}}";
}

/// A library of one tool in mm, whose geometry has `geometry` beside the usual.
std::string mill(const std::string& type, const std::string& geometry = "") {
  return R"({"data": [{"type": ")" + type + R"(", "unit": "millimeters", "description": "A tool",
      "geometry": {"DC": 10, "LCF": 20, "SFDM": 8, "LB": 40, "OAL": 60, "NOF": 3)" +
         (geometry.empty() ? "" : ", ") + geometry + "}}]}";
}

struct CutterCase {
  std::string_view name;
  std::string text;
  std::string_view summary;
  std::string_view note = {};  ///< part of what is approximated; empty: not asked for
};

const CutterCase kBits[] = {
    {"PathOfAnotherMachine",
     bit(R"(C:\\Users\\me\\endmill)", R"("Diameter": "6 mm", "CuttingEdgeHeight": "9 mm")"),
     "mm MILL D6 L9: MILL_FLATEND DIAMETER=6 HEIGHT=9"},
    {"LengthsInOtherUnits",
     bit("endmill", R"("Diameter": "6 mm", "CuttingEdgeHeight": "0.5 in", "Length": "5 cm")"),
     "mm MILL D6 L50: MILL_FLATEND DIAMETER=6 HEIGHT=12.7; shank 37.3"},
    {"NoUnitBesideInches",
     bit("endmill", R"("Diameter": "0.125 in ", "CuttingEdgeHeight": "0.5 ")"),
     "in MILL D0.125 L0.019685: MILL_FLATEND DIAMETER=0.125 HEIGHT=0.0196850393701",
     "CuttingEdgeHeight"},
    {"FlatRadius",
     bit("bullnose", R"("Diameter": "6 mm", "CuttingEdgeHeight": "9 mm", "FlatRadius": "1.5 mm")"),
     "mm MILL D6 L9: MILL_BULLNOSE DIAMETER=6 FILLET=1.5 HEIGHT=9 SPHERIC_TCPTYPE=0"},
    {"RadiusAboveHalfTheDiameter",
     bit("bullnose", R"("Diameter": "6 mm", "CuttingEdgeHeight": "9 mm", "CornerRadius": "4 mm")"),
     "mm MILL D6 L9: MILL_BULLNOSE DIAMETER=6 FILLET=3 HEIGHT=9 SPHERIC_TCPTYPE=0"},
    {"BallBelowTheDiameter",
     bit("ballend", R"("Diameter": "6 mm", "CuttingEdgeHeight": "9 mm", "TipRadius": "1 mm")"),
     "mm MILL D6 L9: MILL_BULLNOSE DIAMETER=6 FILLET=1 HEIGHT=9 SPHERIC_TCPTYPE=0"},
    {"Chamfer",
     bit("chamfer", R"("Diameter": "12 mm", "CuttingEdgeHeight": "6 mm", "CuttingEdgeAngle": 90,
         "TipDiameter": "2 mm")"),
     "mm MILL D12 L6: MILL_CHAMFER1 ANGLE=45 DIAMETER=12 DIAMETER1=2 HEIGHT=6"},
    {"VBitWithoutAngle", bit("v_bit", R"("Diameter": "12 mm", "CuttingEdgeHeight": "6 mm")"),
     "mm MILL D12 L6: MILL_CHAMFER1 ANGLE=45 DIAMETER=12 DIAMETER1=0 HEIGHT=6"},
    {"TapWithInchMarks",
     bit("tap", R"("Diameter": "0.375 \"", "CuttingEdgeLength": "1.063 \"", "Pitch": "0.000 in",
         "TipAngle": "90.000 °")"),
     "in TAP D0.375 L1.063: TAP DIAMETER=0.375 DIAMETER1=0 HEIGHT=1.063 HEIGHT1=0.1875"},
    {"TapWithPitch",
     bit("tap", R"("Diameter": "8 mm", "CuttingEdgeLength": "20 mm", "Pitch": "1 mm")"),
     "mm TAP D8 L20: TAP DIAMETER=8 DIAMETER1=6.7731 HEIGHT=20 HEIGHT1=2 PITCH=1"},
    {"ThreadMill",
     bit("thread-mill", R"("Diameter": "5 mm", "cuttingAngle": "60 °", "Crest": "0.1 mm",
         "NeckDiameter": "3 mm")"),
     "mm MILL D5 L1.2547: MILL_2DPROFILE"},
    {"InsertByLetter", bit("Iso_shape_T", R"("EdgeLength": "11 mm", "TipRadius": "0.4 mm")"),
     "mm TURNING D6.35085 L0: TURNING_INSERT_T ANGLE=60 DIAMETER=6.35085296109 FILLET=0.4 "
     "HEIGHT=4.76 INSERT_SHAPE=T LENGTH=11"},
    {"InsertByAngle",
     bit("isoshape", R"("EdgeLength": "6.35 mm", "TipAngle": "90 °", "TipRadius": "0.4 mm")"),
     "mm TURNING D6.35 L0: TURNING_INSERT_ROMBOID ANGLE=90 DIAMETER=6.35 FILLET=0.4 HEIGHT=4.76 "
     "INSERT_SHAPE=S LENGTH=6.35"},
    {"InsertTrigon", bit("Iso_shape_W", R"("EdgeLength": "8.69 mm", "TipRadius": "0.8 mm")"),
     "mm TURNING D12.7039 L0: TURNING_INSERT_W ANGLE=80 DIAMETER=12.7039301187 FILLET=0.8 "
     "HEIGHT=4.76 INSERT_SHAPE=W LENGTH=8.69"},
    {"InsertRound", bit("Iso_shape_R", R"("EdgeLength": "12 mm", "TipRadius": "6 mm")"),
     "mm TURNING D12 L0: TURNING_INSERT_R DIAMETER=12 FILLET=6 HEIGHT=4.76 INSERT_SHAPE=R "
     "LENGTH=12"},
    {"BullNoseWithoutARadius",
     bit("bullnose", R"("Diameter": "6 mm", "CuttingEdgeHeight": "9 mm")"),
     "mm MILL D6 L9: MILL_FLATEND DIAMETER=6 HEIGHT=9", "no corner radius is given"},
    {"Unknown", bit("corkscrew", R"("Diameter": "8 mm")"), "mm MILL D0 L0: MILL_2DPROFILE"},
};

const CutterCase kMills[] = {
    {"BallWithoutRadius", mill("ball end mill", R"("RE": 0)"),
     "mm MILL D10 L40: MILL_BULLNOSE DIAMETER=10 FILLET=5 HEIGHT=20 SPHERIC_TCPTYPE=0; shank 40"},
    {"ChamferThatEndsEarly", mill("chamfer mill", R"("TA": 5)"),
     "mm MILL D3.49955 L40: MILL_CHAMFER1 ANGLE=5 DIAMETER=3.49954654104 DIAMETER1=0 HEIGHT=20; "
     "shank 40"},
    {"FaceTapered", mill("face mill", R"("TA": 45, "DCX": 20)"),
     "mm FACE_MILLING D20 L40: MILL_CHAMFER2 ANGLE1=45 ANGLE2=90 DIAMETER=20 DIAMETER1=10 "
     "DIAMETER2=20 HEIGHT=20 HEIGHT1=0; shank 40"},
    {"Radius", mill("radius mill", R"("RE": 3)"),
     "mm MILL D16 L40: MILL_CORNER_ROUNDING DIAMETER=16 DIAMETER1=10 FILLET=3 HEIGHT=20 HEIGHT1=0; "
     "shank 40"},
    {"Reamer", mill("reamer", R"("SIG": 0)"),
     "mm DRILL D10 L40: DRILL ANGLE=180 DIAMETER=10 HEIGHT=20; shank 40"},
    {"BoringBar", mill("boring bar", R"("RE": 0.4, "shoulder-length": 35)"),
     "mm BORE D10 L40: BORE ANGLE=0 DIAMETER=10 DIAMETER1=8 FILLET=0.4 HEIGHT=35 HEIGHT1=20; shank "
     "25"},
    {"Lens", mill("circle segment lens", R"("profile-radius": 20)"),
     "mm MILL D10 L40: MILL_2DPROFILE; shank 40"},
    {"RadiusWithoutARadius", mill("radius mill"),
     "mm MILL D10 L40: MILL_FLATEND DIAMETER=10 HEIGHT=20; shank 40", "no radius is given"},
    {"ThreadMillWithoutAPitch", mill("thread mill"),
     "mm MILL D10 L40: DISC DIAMETER=10 FILLET=0 HEIGHT=20; shank 40", "no pitch is given"},
    {"BarrelWithoutARadius", mill("circle segment barrel"),
     "mm MILL D10 L40: MILL_FLATEND DIAMETER=10 HEIGHT=20; shank 40", "no usable profile radius"},
    {"LensWithoutARadius", mill("circle segment lens"),
     "mm MILL D10 L40: MILL_FLATEND DIAMETER=10 HEIGHT=20; shank 40", "no usable profile radius"},
    {"BarrelAcrossTheAxis", mill("circle segment barrel", R"("profile-radius": 10.1)"),
     "mm MILL D10 L40: MILL_FLATEND DIAMETER=10 HEIGHT=20; shank 40", "would cross the axis"},
    {"DovetailThatMeetsTheAxis", mill("dovetail mill", R"("TA": 45)"),
     "mm MILL D10 L40: MILL_2DPROFILE; shank 40", "drawn steeper"},
    {"RoundWithTooLargeARadius",
     mill("turning general", R"("SC": "R", "INSD": 12, "RE": 12, "S": 4)"),
     "mm TURNING D12 L0: TURNING_INSERT_R DIAMETER=12 FILLET=6 HEIGHT=4 INSERT_SHAPE=R",
     "corner radius 12 cut to 6"},
    {"Unknown", mill("corkscrew"), "mm MILL D10 L40: MILL_FLATEND DIAMETER=10 HEIGHT=20; shank 40",
     "drawn as a cylinder"},
};

class Cutters : public testing::TestWithParam<CutterCase> {};

TEST_P(Cutters, HaveWhatTheirFilesSay) {
  const ImportEntry entry = only_entry(import_text(GetParam().text));
  EXPECT_EQ(summary(entry), GetParam().summary);
  EXPECT_TRUE(GetParam().note.empty() || has_note(entry, NoteKind::kApproximated, GetParam().note));
}

INSTANTIATE_TEST_SUITE_P(FreeCad, Cutters, testing::ValuesIn(kBits), row_name<CutterCase>);
INSTANTIATE_TEST_SUITE_P(Fusion, Cutters, testing::ValuesIn(kMills), row_name<CutterCase>);

/// A tool of every type, 60 mm long, with all the dimensions that any type has.
std::vector<std::string> complete_tools() {
  std::vector<std::string> texts;
  for (const char* shape :
       {"endmill", "ballend", "bullnose", "torus", "chamfer", "vbit", "drill", "reamer", "tap",
        "thread_mill", "dovetail", "radius", "slittingsaw", "taperedballnose", "probe"}) {
    texts.push_back(bit(shape, R"("Diameter": "10 mm", "Length": "60 mm", "ShankDiameter": "8 mm",
        "CuttingEdgeHeight": "20 mm", "CuttingEdgeLength": "20 mm", "CornerRadius": "1 mm",
        "CuttingEdgeAngle": "60 °", "TipAngle": "118 °", "CuttingRadius": "2 mm",
        "TipDiameter": "2 mm", "NeckDiameter": "6 mm", "NeckLength": "10 mm",
        "CuttingAngle": "60 °", "Crest": "0.2 mm", "DovetailHeight": "4 mm",
        "BladeThickness": "3 mm", "TaperAngle": "10 °", "ShaftDiameter": "4 mm")"));
  }
  for (const FusionType& type : fusion_types()) {
    if (type.form != FusionClass::kCutter) continue;
    texts.push_back(mill(std::string(type.name), R"("RE": 1, "TA": 10, "SIG": 118, "TP": 1,
        "NT": 2, "profile-radius": 50, "shoulder-length": 30, "shoulder-diameter": 6)"));
  }
  return texts;
}

TEST(Cutters, OfEveryTypeAreAsLongAsTheirFilesSay) {
  for (const std::string& text : complete_tools()) {
    SCOPED_TRACE(text);
    const ImportEntry entry = only_entry(import_text(text));
    EXPECT_FALSE(has_note(entry, NoteKind::kApproximated, "drawn as a cylinder"));
    tdbCuttingTool* cutting = cutting_tool(entry);
    ASSERT_TRUE(cutting != nullptr && cutting->GetShank() != nullptr);
    const double joint =
        cutting->GetShank()->GetAbsPos()(2, 3) - entry.tool->GetAbsPosCutter(0)(2, 3);
    EXPECT_NEAR(joint + cutting->GetShank()->GetLength(), 60, 1e-3);
  }
}

}  // namespace
}  // namespace tooldb
