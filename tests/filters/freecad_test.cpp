#include <gmock/gmock.h>

#include <array>

#include "tests/filters/import_reports.h"

namespace tooldb {
namespace {

TEST(FreeCadBit, RealOnesWithCommasAndOtherUnits) {
  const std::array<std::string, 3> bits[] = {
      {"08f40ae8-2997-11ee-9a1e-8d3dec022611", "New Probe",
       "mm PROBE D6 L50: PROBE DIAMETER=6 SPHERIC_TCPTYPE=0; shank 44.7639"},
      {"2a2863e0-2996-11ee-9a1e-8d3dec022611", "New Dovetail",
       "mm MILL D20.5 L63: MILL_2DPROFILE; shank 58"},
      {"4f1877a0-2999-11ee-9a1e-8d3dec022611", "New Torus",
       "mm MILL D5 L33: MILL_BULLNOSE DIAMETER=5 FILLET=1 HEIGHT=30 SPHERIC_TCPTYPE=0; shank 20"},
      {"fd6e7498-2292-11ee-bac0-d3407e618046", "2,5mm uncoated aluminium dual flute HRC50",
       "mm MILL D1 L10: MILL_FLATEND DIAMETER=1 HEIGHT=7; shank 33"},
  };
  for (const auto& [file, code, expected] : bits) {
    const ImportEntry entry = only_entry(import_sample("freecad/btl/Bit/" + file + ".fctb"));
    EXPECT_EQ(entry.tool->GetCode(), code);
    EXPECT_EQ(summary(entry), expected);
  }
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
  const ImportEntry entry = only_entry(import_text(
      R"({"version": 1, "name": "Nut \"A\"", "units": "mm", "notes": "measure yours",
          "profile": [[0, 0], [16.1, 0], [17.5, 1.4], [17.5, 19], [0, 19]]})",
      "ER20.fcholder"));
  ASSERT_TRUE(entry.component);
  EXPECT_EQ(entry.component->GetCode(), "ER20");
  EXPECT_TRUE(entry.component->IsComponent());
  auto& holder = dynamic_cast<tdbToolHolder&>(*entry.component->GetItem(0U));
  EXPECT_TRUE(holder.IsComponent());
  EXPECT_EQ(holder.GetName(), "Nut \uFF02A\uFF02");
  EXPECT_STREQ(holder.GetParam("FREECAD.notes", ""), "measure yours");
  EXPECT_EQ(holder.GetLength(), 19);
  EXPECT_THAT(holder.GetProfileXml(),
              testing::HasSubstr("<LINE><START>0 0</START><END>16.1 0</END></LINE>"));
}

TEST(FreeCadFiles, GiveACodeWhateverTheirNames) {
  EXPECT_EQ(only_entry(import_text(R"({"shape": "endmill"})", "\x7f .fctb")).tool->GetCode(),
            "Tool");
  for (const auto& [file, code] :
       {std::pair(" .fcholder", "Holder"), {"<1>.fcholder", "\uFF1C1>"}}) {
    const ImportEntry entry =
        only_entry(import_text(R"({"units": "inch", "profile": [[0, 0], [9, 0], [9, 9]]})", file));
    EXPECT_EQ(entry.component->GetUnitOfMeasurement(), 1);
    EXPECT_TRUE(has_note(entry, NoteKind::kApproximated, "in inches"));
    EXPECT_EQ(entry.component->GetCode(), code);
    EXPECT_EQ(entry.component->GetItem(0U)->GetName(), code);
  }
}

}  // namespace
}  // namespace tooldb
