#include <gmock/gmock.h>

#include "tests/filters/import_reports.h"

namespace tooldb {
namespace {

/// What a library of the given entries gives.
ImportResult import_library(const std::string& entries) {
  return import_text(R"({"data": [)" + entries + R"(], "version": 28})", "a.json");
}

TEST(FusionForm, ItsProfileIsTheOutline) {
  const ImportEntry entry = only_entry(import_library(
      R"({"type": "form mill", "unit": "millimeters", "geometry": {"DC": 10, "OAL": 20, "profile": [
          {"end": [0, 0]}, {"end": [3, 0]},
          {"arc": true, "ccw": false, "center": [5, 0], "end": [5, 2]},
          {"end": [5, 20]}, {"end": [-5e-18, 20]}]}})"));
  EXPECT_STREQ(cutting_tool(entry)->GetCutter()->GetProfileXml(),
               "<LINE><START>0 0</START><END>3 0</END></LINE>"
               "<ARC DIR=\"CW\" ><START>3 0</START><END>5 2</END><CENTER>5 0</CENTER></ARC>"
               "<LINE><START>5 2</START><END>5 20</END></LINE>"
               "<LINE><START>5 20</START><END>0 20</END></LINE>");
  EXPECT_NEAR(entry.tool->GetDiameter(), 10, 1e-6);
}

TEST(FusionLibrary, TheLengthOffsetIsTheOffsetRegister) {
  const ImportEntry entry = only_entry(import_library(
      R"({"type": "drill", "geometry": {"DC": 6}, "post-process": {"number": 7, "length-offset": 9}})"));
  ASSERT_EQ(entry.tool->GetOffsetParamCount(), 1);
  EXPECT_EQ(entry.tool->GetOffsetParam(0).index, 9);
  EXPECT_EQ(entry.tool->GetOffsetParam(0).RAD, 3);
}

TEST(FusionLibrary, CodesAreNumbersThenIdsThenDescriptions) {
  const auto tool = [](const std::string& number, const std::string& id, const std::string& text) {
    return R"({"type": "drill", "unit": "inches", "geometry": {"DC": 0.25}, "product-id": ")" + id +
           R"(", "description": ")" + text + R"(", "post-process": {"number": )" + number + "}}";
  };
  const ImportResult result = import_library(
      tool("4", "X1", "a") + "," + tool("1", R"(11\t22 )", "b") + "," +
      tool("1", "", R"(1/2\" drill)") + "," + tool("0", "", "") + "," + tool("0", "", ""));
  std::vector<std::string> codes;
  for (const ImportEntry& entry : result.entries) codes.push_back(entry.tool->GetCode());
  EXPECT_THAT(codes, testing::ElementsAre("T4", "11 22", "1/2\uFF02 drill", "drill D0.25 in",
                                          "drill D0.25 in (2)"));
}

TEST(FusionLibrary, BadEntriesAreReportedAndTheRestGoesOn) {
  const ImportResult result =
      import_library(R"(5, {}, {"type": "waterjet"}, {"type": "holder", "segments": []},
                 {"type": "drill", "geometry": "none"}, {"type": "drill", "geometry": {"DC": 1}})");
  const std::pair<NoteKind, const char*> problems[] = {
      {NoteKind::kFailed, "not an object"},
      {NoteKind::kFailed, "no type"},
      {NoteKind::kNotRepresentable, "waterjet"},
      {NoteKind::kFailed, "segments"},
      {NoteKind::kNotRepresentable, "diameter (DC)"}};
  ASSERT_EQ(result.entries.size(), std::size(problems) + 1);
  for (std::size_t i = 0; i < std::size(problems); ++i) {
    EXPECT_TRUE(has_note(result.entries[i], problems[i].first, problems[i].second)) << i;
  }
  EXPECT_NE(cutting_tool(result.entries.back()), nullptr);
}

}  // namespace
}  // namespace tooldb
