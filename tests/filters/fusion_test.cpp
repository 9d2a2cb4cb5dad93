#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "filters/fusion_types.h"
#include "tests/filters/import_reports.h"

namespace tooldb {
namespace {

using testing::HasSubstr;

/// A library of the given entries.
std::string library(const std::string& entries) {
  return R"({"data": [)" + entries + R"(], "version": 28})";
}

/// A mm entry of the given type and geometry.
std::string entry_text(const std::string& type, const std::string& geometry) {
  return R"({"type": ")" + type +
         R"(", "unit": "millimeters", "description": "A tool", "geometry": {)" + geometry + "}}";
}

ImportEntry import_entry(const std::string& type, const std::string& geometry) {
  ImportResult result = import_text(library(entry_text(type, geometry)), "a.json");
  check_import(result);
  EXPECT_EQ(result.entries.size(), 1U);
  return std::move(result.entries.front());
}

const std::string kBody = R"("DC": 10, "LCF": 20, "SFDM": 8, "LB": 40, "OAL": 60, "NOF": 3)";

struct TypeCase {
  std::string_view name, type, geometry, expected, cutter;
  int tool_type;
};

const TypeCase kTypes[] = {
    {"Flat", "flat end mill", R"("RE": 0, "tip-diameter": 10)", "MILL_FLATEND",
     "DIAMETER=10 HEIGHT=20", 0},
    {"BallWithoutRadius", "ball end mill", R"("RE": 0)", "MILL_BULLNOSE",
     "DIAMETER=10 FILLET=5 HEIGHT=20 SPHERIC_TCPTYPE=0", 0},
    {"BullNose", "bull nose end mill", R"("RE": 1.5)", "MILL_BULLNOSE",
     "DIAMETER=10 FILLET=1.5 HEIGHT=20 SPHERIC_TCPTYPE=0", 0},
    {"Chamfer", "chamfer mill", R"("TA": 45, "tip-diameter": 2)", "MILL_CHAMFER1",
     "ANGLE=45 DIAMETER=10 DIAMETER1=2 HEIGHT=20", 0},
    {"ChamferThatEndsEarly", "chamfer mill", R"("TA": 5)", "MILL_CHAMFER1",
     "ANGLE=5 DIAMETER=3.49954654104 DIAMETER1=0 HEIGHT=20", 0},
    {"FaceSquare", "face mill", R"("TA": 0, "RE": 0)", "MILL_FLATEND", "DIAMETER=10 HEIGHT=20", 7},
    {"FaceTapered", "face mill", R"("TA": 45, "DCX": 20)", "MILL_CHAMFER2",
     "ANGLE1=45 ANGLE2=90 DIAMETER=20 DIAMETER1=10 DIAMETER2=20 HEIGHT=20 HEIGHT1=0", 7},
    {"Radius", "radius mill", R"("RE": 3)", "MILL_CORNER_ROUNDING",
     "DIAMETER=16 DIAMETER1=10 FILLET=3 HEIGHT=20 HEIGHT1=0", 0},
    {"Slot", "slot mill", "", "DISC", "DIAMETER=10 FILLET=0 HEIGHT=20", 6},
    {"Lollipop", "lollipop mill", "", "MILL_LOLLIPOP", "DIAMETER=10 SPHERIC_TCPTYPE=0", 0},
    {"Tapered", "tapered mill", R"("TA": 5, "RE": 1)", "MILL_STANDARD",
     "ANGLE=5 ANGLE1=0 DIAMETER=10 FILLET=1 HEIGHT=20 STANDARD_TCPTYPE=0", 0},
    {"Drill", "drill", R"("SIG": 118)", "DRILL", "ANGLE=118 DIAMETER=10 HEIGHT=20", 1},
    {"SpotDrill", "spot drill", R"("SIG": 90)", "DRILL", "ANGLE=90 DIAMETER=10 HEIGHT=20", 1},
    {"Reamer", "reamer", R"("SIG": 0)", "DRILL", "ANGLE=180 DIAMETER=10 HEIGHT=20", 1},
    {"BoringBar", "boring bar", R"("RE": 0.4, "shoulder-length": 35)", "BORE",
     "ANGLE=0 DIAMETER=10 DIAMETER1=8 FILLET=0.4 HEIGHT=35 HEIGHT1=20", 9},
    {"Tap", "tap left hand", R"("TP": 1.5, "HAND": false)", "TAP",
     "DIAMETER=10 DIAMETER1=8.15965 HEIGHT=20 HEIGHT1=3 PITCH=1.5", 5},
    {"Probe", "probe", "", "PROBE", "DIAMETER=10 SPHERIC_TCPTYPE=0", 2},
    {"ThreadMill", "thread mill", R"("TP": 1.5, "NT": 3)", "MILL_2DPROFILE", "", 0},
    {"Dovetail", "dovetail mill", R"("TA": 10)", "MILL_2DPROFILE", "", 0},
    {"Barrel", "circle segment barrel", R"("profile-radius": 60)", "MILL_2DPROFILE", "", 0},
    {"Lens", "circle segment lens", R"("profile-radius": 20)", "MILL_2DPROFILE", "", 0},
    {"Rhombic", "turning general", R"("SC": "V", "INSD": 9.525, "RE": 0.8, "S": 4)",
     "TURNING_INSERT_ROMBOID", "ANGLE=35 DIAMETER=9.525 FILLET=0.8 HEIGHT=4 INSERT_SHAPE=V", 3},
    {"Groove", "turning grooving", R"("SC": "groove square", "tool_insertWidth": 3, "LH": 12)",
     "TURNING_INSERT_ROMBOID", "", 3},
    {"Unknown", "corkscrew", "", "MILL_FLATEND", "DIAMETER=10 HEIGHT=20", 0},
};

class FusionTypes : public testing::TestWithParam<TypeCase> {};

TEST_P(FusionTypes, BecomesItsCutter) {
  const TypeCase& expected = GetParam();
  const std::string more(expected.geometry);
  const ImportEntry entry =
      import_entry(std::string(expected.type), kBody + (more.empty() ? "" : ", ") + more);
  ASSERT_TRUE(entry.tool);
  EXPECT_EQ(entry.tool->GetType(), expected.tool_type);
  tdbCuttingTool* cutting = cutting_tool(entry);
  ASSERT_NE(cutting, nullptr);
  EXPECT_EQ(cutting->GetTypeName(), expected.expected);
  EXPECT_EQ(dimensions(*cutting->GetCutter()), expected.cutter);
}

INSTANTIATE_TEST_SUITE_P(Fusion, FusionTypes, testing::ValuesIn(kTypes),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(FusionTypes, EveryTypeAccountsForItselfAndEveryCutterHasItsLength) {
  for (const FusionType& type : fusion_types()) {
    SCOPED_TRACE(type.name);
    const ImportEntry entry = import_entry(
        std::string(type.name),
        kBody + R"(, "RE": 1, "TA": 10, "SIG": 118, "TP": 1, "NT": 2, "profile-radius": 50,
                    "shoulder-length": 30, "shoulder-diameter": 6)");
    EXPECT_EQ(entry.tool != nullptr,
              type.form != FusionClass::kHolder && type.form != FusionClass::kJet);
    tdbCuttingTool* cutting = cutting_tool(entry);
    if (type.form != FusionClass::kCutter) continue;
    ASSERT_NE(cutting, nullptr);
    EXPECT_FALSE(has_note(entry, NoteKind::kApproximated, "drawn as a cylinder"));
    ASSERT_NE(cutting->GetShank(), nullptr);
    const double joint =
        cutting->GetShank()->GetAbsPos()(2, 3) - entry.tool->GetAbsPosCutter(0)(2, 3);
    EXPECT_NEAR(joint + cutting->GetShank()->GetLength(), 60, 1e-3);
    EXPECT_NEAR(entry.tool->GetLength(), 40, 1e-9);
  }
}

TEST(FusionTypes, KeepItsOwnNumbersWhereTheyAreNotDrawnAsTheyStand) {
  const ImportEntry redrawn = import_entry("chamfer mill", kBody + R"(, "TA": 5)");
  EXPECT_STREQ(redrawn.tool->GetParamValue("FUSION.geometry.DC"), "10");
  const ImportEntry exact = import_entry("flat end mill", kBody);
  EXPECT_EQ(exact.tool->GetParamIndex("FUSION.geometry.DC"), -1);
}

TEST(FusionForm, ItsProfileIsTheOutline) {
  const ImportEntry entry = import_entry("form mill", R"("DC": 10, "OAL": 20, "profile": [
      {"end": [0, 0]}, {"end": [3, 0]},
      {"arc": true, "ccw": false, "center": [5, 0], "end": [5, 2]},
      {"end": [5, 20]}, {"end": [-5e-18, 20]}])");
  tdbToolCutter* cutter = cutting_tool(entry)->GetCutter();
  EXPECT_STREQ(cutter->GetProfileXml(),
               "<LINE><START>0 0</START><END>3 0</END></LINE>"
               "<ARC DIR=\"CW\" ><START>3 0</START><END>5 2</END><CENTER>5 0</CENTER></ARC>"
               "<LINE><START>5 2</START><END>5 20</END></LINE>"
               "<LINE><START>5 20</START><END>0 20</END></LINE>");
  EXPECT_NEAR(entry.tool->GetDiameter(), 10, 1e-6);
}

const std::string kHolder = R"("holder": {"description": "ER16", "type": "holder",
    "unit": "millimeters", "vendor": "A & B", "gaugeLength": 50, "segments": [
    {"height": 30, "lower-diameter": 20, "upper-diameter": 28},
    {"height": 30, "lower-diameter": 40, "upper-diameter": 40}]})";

std::string held(const std::string& unit, const std::string& scale) {
  return R"({"type": "flat end mill", "unit": ")" + unit + R"(", "geometry": {"DC": )" + scale +
         R"(, "LCF": )" + scale + R"(, "LB": 2, "OAL": 3}, )" + kHolder + "}";
}

TEST(FusionHolder, OneUseIsAHolderWithItsNoseAtTheStickout) {
  const ImportResult result = import_text(library(held("millimeters", "1")), "a.json");
  check_import(result);
  ASSERT_EQ(result.entries.size(), 1U);
  tdbTool& tool = *result.entries[0].tool;
  ASSERT_EQ(tool.GetHolderCount(), 1);
  tdbToolHolder& holder = *tool.GetHolder(0);
  EXPECT_EQ(holder.GetType(), 2);
  EXPECT_NEAR(holder.GetAbsPos()(2, 3) - tool.GetAbsPosCutter(0)(2, 3), 2, 1e-9);
  EXPECT_NEAR(tool.GetLength(), 52, 1e-9);  // the rest of the holder is above the gauge line
  EXPECT_NEAR(holder.GetLength(), 60, 1e-9);
  EXPECT_STREQ(holder.GetParam("FUSION.vendor", ""), "A \uFF06 B");
}

TEST(FusionHolder, RepeatedOnesAreOneComponentPerUnitOfTheTools) {
  const ImportResult result =
      import_text(library(held("millimeters", "1") + "," + held("millimeters", "1.5") + "," +
                          held("inches", "0.1") + "," + held("inches", "0.2")),
                  "a.json");
  check_import(result);
  ASSERT_EQ(result.entries.size(), 6U);
  EXPECT_EQ(result.entries[0].component->GetCode(), "ER16");
  EXPECT_EQ(result.entries[1].component->GetCode(), "ER16 in");
  const tdbTool& inch_tool = *result.entries[4].tool;
  const tdbItem* use = inch_tool.GetItem(1U);
  EXPECT_EQ(use->GetCode(), "ER16 in");
  EXPECT_FALSE(use->IsComponent());
  EXPECT_NEAR(inch_tool.GetLength(), 2 + 50 / 25.4, 1e-9);
  EXPECT_NEAR(inch_tool.GetHolder(0)->GetLength(), 60 / 25.4, 1e-6);
}

TEST(FusionHolder, CanBePutIntoTheToolsThemselves) {
  const ImportResult result =
      import_text(library(held("millimeters", "1") + "," + held("millimeters", "1.5")), "a.json");
  tdbTool& tool = *result.entries.at(1).tool;
  const double nose = tool.GetHolder(0)->GetAbsPos()(2, 3);
  embed_components(tool);
  ASSERT_EQ(tool.GetItemCount(), 2U);
  auto* holder = dynamic_cast<tdbToolHolder*>(tool.GetItem(1U));
  ASSERT_NE(holder, nullptr);
  EXPECT_FALSE(holder->IsComponent());
  EXPECT_EQ(holder->GetAbsPos()(2, 3), nose);
}

TEST(FusionLibrary, RealMillsAreAllThere) {
  const ImportResult result = import_sample("fusion/matsuura-mx330.json");
  check_import(result);
  int tools = 0;
  int components = 0;
  for (const ImportEntry& entry : result.entries) {
    tools += entry.tool != nullptr;
    components += entry.component != nullptr;
    EXPECT_FALSE(has_note(entry, NoteKind::kFailed)) << entry.source;
    EXPECT_FALSE(has_note(entry, NoteKind::kApproximated, "drawn as a cylinder")) << entry.source;
    EXPECT_FALSE(has_note(entry, NoteKind::kApproximated, "assemblyGaugeLength")) << entry.source;
  }
  EXPECT_EQ(tools, 21);
  EXPECT_EQ(components, 7);
}

TEST(FusionLibrary, EveryRealCutterHasItsDiameterLengthAndTeeth) {
  const auto document = nlohmann::json::parse(sample_source("fusion/matsuura-mx330.json"));
  const ImportResult result = import_sample("fusion/matsuura-mx330.json");
  int compared = 0;
  for (const auto& source : document["data"]) {
    if (source["type"] == "holder") continue;
    const auto entry =
        std::ranges::find(result.entries, source["guid"].get<std::string>(), &ImportEntry::guid);
    ASSERT_NE(entry, result.entries.end());
    const auto& geometry = source["geometry"];
    const tdbTool& tool = *entry->tool;
    EXPECT_NEAR(tool.GetLength(), geometry["assemblyGaugeLength"].get<double>(), 1e-4)
        << entry->source;
    if (source["type"] != "tapered mill") {
      EXPECT_NEAR(tool.GetDiameter(), geometry["DC"].get<double>(), 1e-9) << entry->source;
    }
    if (geometry.contains("NOF")) {
      EXPECT_EQ(tool.GetCutCond().GetNumberOfInsert(), geometry["NOF"].get<int>());
    }
    ++compared;
  }
  EXPECT_EQ(compared, 21);
}

TEST(FusionLibrary, PresetsAreKeptAndTheFirstOneIsUsed) {
  const ImportResult result = import_text(
      library(R"({"type": "flat end mill", "unit": "inches", "geometry": {"DC": 0.5, "NOF": 4},
        "post-process": {"number": 7, "length-offset": 9, "comment": "rough"},
        "start-values": {"presets": [
          {"name": "Steel", "n": 5000, "v_f": 20, "f_z": 0.001, "use-stepdown": true,
           "stepdown": 0.1, "material": {"category": "all", "query": ""}},
          {"name": "Brass", "n": 9000}]}})"),
      "a.json");
  const tdbTool& tool = *result.entries.at(0).tool;
  EXPECT_EQ(tool.GetCode(), "T7");
  EXPECT_STREQ(tool.GetComment(), "rough");
  EXPECT_STREQ(tool.GetParamValue("FUSION.PRESET.0.name"), "Steel");
  EXPECT_STREQ(tool.GetParamValue("FUSION.PRESET.0.material.category"), "all");
  EXPECT_STREQ(tool.GetParamValue("FUSION.PRESET.1.n"), "9000");
  EXPECT_EQ(tool.GetCutCond().GetVerifySpindle().maximum, 5000);
  EXPECT_NEAR(tool.GetCutCond().GetVerifyFeed().maximum, 508, 1e-9);
  EXPECT_NEAR(tool.GetCutCond().GetOptimChipThickness().optimal, 0.0254, 1e-12);
  EXPECT_NEAR(tool.GetCutCond().GetAp(), 2.54, 1e-12);
  ASSERT_EQ(tool.GetOffsetParamCount(), 1);
  EXPECT_EQ(tool.GetOffsetParam(0).index, 9);
  EXPECT_EQ(tool.GetOffsetParam(0).RAD, 0.25);
}

TEST(FusionLibrary, CodesAreNumbersThenIdsThenDescriptions) {
  const auto tool = [](const std::string& number, const std::string& id, const std::string& text) {
    return R"({"type": "drill", "unit": "inches", "geometry": {"DC": 0.25}, "product-id": ")" + id +
           R"(", "description": ")" + text + R"(", "post-process": {"number": )" + number + "}}";
  };
  const ImportResult result = import_text(
      library(tool("4", "X1", "a") + "," + tool("1", R"(11\t22 )", "b") + "," +
              tool("1", "", R"(1/2\" drill)") + "," + tool("0", "", "") + "," + tool("0", "", "")),
      "a.json");
  check_import(result);
  std::vector<std::string> codes;
  for (const ImportEntry& entry : result.entries) codes.push_back(entry.tool->GetCode());
  EXPECT_THAT(codes, testing::ElementsAre("T4", "11 22", "1/2\uFF02 drill", "drill D0.25 in",
                                          "drill D0.25 in (2)"));
}

TEST(FusionLibrary, JetsAndBadEntriesAreReportedAndTheRestGoesOn) {
  const ImportResult result =
      import_text(library(R"(5, {}, {"type": "waterjet"}, {"type": "holder", "segments": []},
                 {"type": "drill", "geometry": "none"},)" +
                          entry_text("drill", kBody)),
                  "a.json");
  check_import(result);
  ASSERT_EQ(result.entries.size(), 6U);
  const auto reports = [&](std::size_t i, NoteKind kind, std::string_view text) {
    return has_note(result.entries[i], kind, text);
  };
  EXPECT_TRUE(reports(0, NoteKind::kFailed, "not an object"));
  EXPECT_TRUE(reports(1, NoteKind::kFailed, "no type"));
  EXPECT_TRUE(reports(2, NoteKind::kNotRepresentable, "waterjet"));
  EXPECT_TRUE(reports(3, NoteKind::kFailed, "segments"));
  EXPECT_TRUE(reports(4, NoteKind::kNotRepresentable, "DC"));
  EXPECT_NE(cutting_tool(result.entries[5]), nullptr);
}

TEST(FusionLibrary, FilesThatAreNoLibrarySaySo) {
  const std::pair<const char*, const char*> kCases[] = {
      {"\n<!DOCTYPE html>\n<html>", "web page"},
      {"{\"data\": 5}", "no list named"},
      {"{\"data\": [", "line 1"},
      {"\xEF\xBB\xBF", "empty"},
      {"{\"a\": \"\xE4\"}", "UTF-8"},
  };
  for (const auto& [text, problem] : kCases) {
    const ImportResult result = import_text(text, "a.json");
    ASSERT_EQ(result.notes.size(), 1U) << text;
    EXPECT_THAT(result.notes[0].text, HasSubstr(problem));
    EXPECT_EQ(result.notes[0].kind, NoteKind::kFailed);
  }
}

TEST(FusionArchive, IsTheSameLibraryPacked) {
  const ImportResult result = import_sample("fusion/ollema.tools");
  check_import(result);
  ASSERT_EQ(result.entries.size(), 3U);
  EXPECT_EQ(result.format, "fusion-archive");
  EXPECT_EQ(dimensions(*cutting_tool(result.entries[0])->GetCutter()),
            "ANGLE=30 DIAMETER=10 DIAMETER1=0 HEIGHT=10");
}

}  // namespace
}  // namespace tooldb
