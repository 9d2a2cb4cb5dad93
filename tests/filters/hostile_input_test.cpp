#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "tests/filters/import_reports.h"
#include "tests/geom/row_name.h"
#include "tests/repeated.h"

namespace tooldb {
namespace {

using nlohmann::json;

/// One file of each format, with every kind of field that its reader knows.
struct Seed {
  std::string_view name, file_name, text;
};

const Seed kSeeds[] = {
    {"Bit", "a.fctb", R"({"version": 2, "id": "a", "name": "A", "shape": "v-bit.fcstd",
        "shape-type": "VBit", "attribute": {"vendor": "V", "btl-stickout": "3 mm"},
        "parameter": {"Diameter": "6 mm", "CuttingEdgeAngle": "60 °", "CuttingEdgeHeight": "9 mm",
        "Length": "50 mm", "ShankDiameter": "6 mm", "TipDiameter": "1 mm", "Flutes": 2,
        "Chipload": "25 μm", "Stickout": "20 mm"}})"},
    {"Insert", "a.fctb", R"({"shape": "isoshape.fcstd", "parameter": {"EdgeLength": "6 mm",
        "TipAngle": "80 °", "TipRadius": "0.4 mm"}})"},
    {"Library", "a.fctl", R"({"version": 1, "label": "L",
        "tools": [{"nr": 1, "path": "a.fctb", "pocket": 2}]})"},
    {"Holder", "a.fcholder", R"({"version": 1, "name": "N", "units": "mm", "type": "T",
        "profile": [[0, 0], [16.1, 0], [16.1, 19], [0, 19]]})"},
    {"Mill", "a.json", R"({"data": [{"type": "tapered mill", "unit": "inches", "guid": "g",
        "description": "D", "product-id": "p", "tapered-type": "tapered_ball",
        "geometry": {"DC": 1, "LCF": 2, "RE": 0.2, "TA": 10, "SFDM": 1, "LB": 3, "OAL": 4,
        "NOF": 3, "shoulder-length": 2.5, "shoulder-diameter": 0.8, "assemblyGaugeLength": 5},
        "shaft": {"segments": [{"height": 1, "lower-diameter": 1, "upper-diameter": 2}]},
        "holder": {"description": "H", "unit": "inches", "gaugeLength": 2,
        "segments": [{"height": 2, "lower-diameter": 2, "upper-diameter": 3}]},
        "post-process": {"number": 7, "length-offset": 7, "comment": "c"},
        "start-values": {"presets": [{"n": 1000, "v_f": 20, "f_z": 0.1, "stepdown": 1,
        "use-stepdown": true}]}}], "version": 28})"},
    {"Form", "a.json", R"({"data": [{"type": "form mill", "unit": "millimeters", "geometry":
        {"DC": 10, "OAL": 30, "SFDM": 8, "profile": [{"end": [0, 0]}, {"end": [3, 0]},
        {"arc": true, "ccw": false, "center": [5, 0], "end": [5, 2]}, {"end": [0, 2]}]}}]})"},
    {"Turning", "a.json", R"({"data": [{"type": "turning grooving", "unit": "millimeters",
        "geometry": {"SC": "groove square", "tool_insertWidth": 3, "LH": 12, "RE": 0.2, "S": 4},
        "holder": {"H": 20, "HAND": "R"}, "setup": {"angle": 0},
        "post-process": {"compensation-offset": 3}, "start-values": {"presets":
        [{"f_n": 0.1, "depth-of-cut": 1}]}},
        {"type": "turning general", "geometry": {"SC": "C", "INSD": 12.7, "RE": 0.8, "S": 4.76}},
        {"type": "holder", "unit": "inches", "description": "h", "gaugeLength": 1,
        "segments": [{"height": 2, "lower-diameter": 2, "upper-diameter": 3}]}]})"},
};

ImportResult import_hostile(std::string_view text, std::string_view file_name) {
  const auto beside = [](const std::string&) { return std::string(kSeeds[0].text); };
  return import_tools(text, std::string(file_name), beside);
}

class HostileInput : public testing::TestWithParam<Seed> {};

TEST_P(HostileInput, EveryCutAndEveryChangedByteIsAccountedFor) {
  const std::string_view text = GetParam().text;
  for (std::size_t i = 0; i < text.size(); ++i) {
    check_import(import_hostile(text.substr(0, i), GetParam().file_name));
    for (const char c : {'\0', '\xFF', '"', '9', '{', ']'}) {
      std::string changed(text);
      changed[i] = c;
      check_import(import_hostile(changed, GetParam().file_name));
    }
  }
}

const json kKinds = json::parse(R"([null, true, -1, 0, 1e300, 18446744073709551615, "",
    "text <&\"\u0001", "1e7 mm", [], [1, "a", []], {}, {"end": 5, "segments": 5, "a b<": "c"}])");

/// The document without what stands at a place, and with values of other kinds there.
std::vector<json> changed_at(const json& whole, const json::json_pointer& at) {
  std::vector<json> documents(kKinds.size(), whole);
  for (std::size_t i = 0; i < kKinds.size(); ++i) documents[i][at] = kKinds[i];
  documents.push_back(whole.patch({{{"op", "remove"}, {"path", at.to_string()}}}));
  return documents;
}

TEST_P(HostileInput, EveryFieldMayBeMissingOrOfAnyKind) {
  const json whole = json::parse(GetParam().text);
  const json fields = whole.flatten();
  for (const auto& [pointer, old] : fields.items()) {
    // The field itself, and each structure above it.
    for (json::json_pointer at(pointer); !at.empty(); at.pop_back()) {
      for (const json& changed : changed_at(whole, at)) {
        SCOPED_TRACE(changed.dump());
        check_import(import_hostile(changed.dump(), GetParam().file_name));
        if (HasFailure()) return;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Formats, HostileInput, testing::ValuesIn(kSeeds), row_name<Seed>);

struct RefusedCase {
  std::string file_name, text, problem;
};

const RefusedCase kRefused[] = {
    {"a.json", "\n<!DOCTYPE html>\n<html>", "web page"},
    {"a.fctb", "{\"shape\": \"a\", \"parameter\": ", "parse error at line 1"},
    {"a.fctb", "", "empty"},
    {"a.json", "\xEF\xBB\xBF", "empty"},
    {"a.json", "{\"a\": \"\xE4\"}", "UTF-8"},
    {"a.fctl", repeated("[", 100000), "nested too deeply"},
    {"a.fcholder", repeated("{\"a\":", 100000), "nested too deeply"},
    {"a.fctb", "[1, 2]", "no tool bit"},
    {"a.fctb", "{}", "no tool bit"},
    {"a.json", "{\"data\": 5}", "no list named"},
    {"cube.stl", "solid cube", "no known format"},
};

TEST(HostileInput, IsRefusedWithOneReason) {
  for (const auto& [file_name, text, problem] : kRefused) {
    SCOPED_TRACE(problem);
    const ImportResult result = import_text(text, file_name);
    const auto& notes = result.notes.empty() ? result.entries.at(0).notes : result.notes;
    ASSERT_EQ(notes.size(), 1U);
    EXPECT_EQ(notes[0].kind, NoteKind::kFailed);
    EXPECT_THAT(notes[0].text, testing::HasSubstr(problem));
    EXPECT_LT(notes[0].text.size(), 300U);
  }
}

// Each took time with the square of its length once.
struct LongCase {
  std::string file_name, text;
  std::size_t entries;
  std::string last_code;
};
const LongCase kLong[] = {
    {"a.json", R"({"data": [)" + repeated("[],", 50000) + R"({"type": "drill"}]})", 50001, "drill"},
    {"a.fctl",
     R"({"tools": [)" + repeated(R"({"path": "a.fctb"},)", 4999) + R"({"path": "a.fctb"}]})", 5000,
     "a (5000)"},
    {"a.fctb", R"({"shape": "endmill", "id": ")" + repeated("/", 65000) + "\"}", 1,
     repeated("/", 33)},
};

TEST(HostileInput, IsReadToItsEnd) {
  for (const auto& [file_name, text, entries, last_code] : kLong) {
    SCOPED_TRACE(file_name);
    const ImportResult result = import_hostile(text, file_name);
    ASSERT_EQ(result.entries.size(), entries);
    ASSERT_TRUE(result.entries.back().tool);
    EXPECT_EQ(result.entries.back().tool->GetCode(), last_code);
  }
}

TEST(FindImportFormat, ContentDecidesWhereTheNameSaysOtherwise) {
  EXPECT_EQ(find_import_format("mine.txt", kSeeds[0].text)->name, "freecad-bit");
  EXPECT_EQ(find_import_format("a.JSON", kSeeds[4].text)->name, "fusion");
  EXPECT_EQ(find_import_format("a.tools", kSeeds[4].text)->name, "fusion");
  EXPECT_EQ(find_import_format("a.json", kSeeds[0].text)->name, "freecad-bit");
  EXPECT_EQ(find_import_format("a.fctb", "")->name, "freecad-bit");
}

}  // namespace
}  // namespace tooldb
