// What the reader makes of documents that the writer does not write: older layouts, missing and
// odd values, parents and components.

#include "geom/euler_angles.h"
#include "tests/xml/xml_fixture.h"
#include "tooldb/model/tree_walk.h"
#include "tooldb/model/type_tables.h"
#include "tooldb/xml_reader.h"

namespace tooldb {
namespace {

struct ToolCase {
  const char* name;
  const char* attributes;
  double (*value)(const tdbTool&);
  double expected;
};

const ToolCase kToolAttributes[] = {
    {"SpanMissing", "", [](auto& t) { return t.GetSectionSpanAngle(); }, 180},
    {"SpanGiven", "SEC_SPAN='90.5'", [](auto& t) { return t.GetSectionSpanAngle(); }, 90.5},
    {"SectionMissing", "", [](auto& t) { return double(t.IsSectionEnabled()); }, 0},
    {"SectionLowerCase", "SEC='true'", [](auto& t) { return double(t.IsSectionEnabled()); }, 0},
    {"Section", "SEC='TRUE'", [](auto& t) { return double(t.IsSectionEnabled()); }, 1},
    {"ToleranceMissing", "", [](auto& t) { return t.GetToolModelTolerance(); }, 0.1},
    {"ExtensionMissing", "", [](auto& t) { return t.GetCutterExtensionValue(); }, -0.1},
    {"Extension", "OPT_OFFSET='0.5'", [](auto& t) { return t.GetCutterExtensionValue(); }, 0.5},
    {"NoNumber", "DIAMETER='wide'", [](auto& t) { return t.GetDiameter(); }, 0},
    {"LeadingNumber", "DIAMETER=' +12.5mm'", [](auto& t) { return t.GetDiameter(); }, 12.5},
    {"DecimalComma", "DIAMETER='12,5'", [](auto& t) { return t.GetDiameter(); }, 12},
    {"Temporary", "TEMP='TRUE'", [](auto& t) { return double(t.GetFlags()); }, 1},
    {"TraceColorMissing", "", [](auto& t) { return double(t.GetTraceColor()); }, 19},
    {"TraceColorTooHigh", "TRACECOLOR='99'", [](auto& t) { return double(t.GetTraceColor()); }, 19},
    {"Units", "UNITS='INCHES'", [](auto& t) { return double(t.GetUnitOfMeasurement()); }, 1},
    {"Unit", "UNIT='INCHES'", [](auto& t) { return double(t.GetUnitOfMeasurement()); }, 1},
    {"UnitElse", "UNITS='inches'", [](auto& t) { return double(t.GetUnitOfMeasurement()); }, 0},
    {"TypeProbe", "TYPE='PROBE'", [](auto& t) { return double(t.GetType()); }, 2},
    {"TypeMissing", "", [](auto& t) { return double(t.GetType()); }, 0},
    {"TypeSpeltOtherwise", "TYPE=' drill\n'", [](auto& t) { return double(t.GetType()); }, 1},
    {"SubType", "CUTTER_TYPE='SHOULDER_MILLING'", [](auto& t) { return double(t.GetSubType()); },
     8},
    {"OldLength", "LENGTH='55'", [](auto& t) { return t.GetLength(); }, 55},
    {"OffsetBeforeLength", "LENGTH='55' OFFSETZ='7'", [](auto& t) { return t.GetLength(); }, 7},
    {"RegionMissing", "", [](auto& t) { return t.GetLegacyData().cut_region_z; }, -1000},
    {"RegionNone", "CUTREGION_R='-1'", [](auto& t) { return t.GetLegacyData().cut_region_r; },
     -1000},
    {"Region", "CUTREGION_Z='-1.0'", [](auto& t) { return t.GetLegacyData().cut_region_z; }, -1},
    {"SpindleMissing", "SMIN='3'", [](auto& t) { return t.GetLegacyData().max_spindle; }, 1e12},
    {"Spindle", "SMAX='8000'", [](auto& t) { return t.GetLegacyData().max_spindle; }, 8000},
    {"SpindleNotInConditions", "SMAX='8000'",
     [](auto& t) { return t.GetCutCond().GetVerifySpindle().maximum; }, 20000},
    {"OldFlag", "CHECK_FMAX='TRUE'",
     [](auto& t) { return double(t.GetLegacyData().check_max_feed); }, 1},
    {"OldCount", "INSERT_NUMBER='5'",
     [](auto& t) { return double(t.GetLegacyData().insert_number); }, 5},
    {"OldApproachMissing", "SMAX='1'", [](auto& t) { return t.GetLegacyData().approach_angle; },
     90},
};

class ToolAttributes : public testing::TestWithParam<ToolCase> {};
TEST_P(ToolAttributes, AreReadWithTheirDefaults) {
  EXPECT_EQ(GetParam().value(*tool_from(tool_with("", GetParam().attributes))),
            GetParam().expected);
}
INSTANTIATE_TEST_SUITE_P(Attributes, ToolAttributes, testing::ValuesIn(kToolAttributes),
                         [](const auto& row) { return std::string(row.param.name); });

struct CodeCase {
  const char* name;
  const char* attributes;
  const char* code;
};
const CodeCase kCodes[] = {
    {"Code", "VER='13' CODE=' c\n' ID='i'", "c"}, {"Id", "VER='3' CODE='c' ID='i'", "i"},
    {"NoVersion", "CODE='c' ID='i'", "c"},        {"NoVersionId", "ID='i'", "i"},
    {"NameInstead", "VER='13' ID='i'", "T"},      {"EmptyCode", "CODE='' VER='5'", "T"},
};
class ToolCodes : public testing::TestWithParam<CodeCase> {};
TEST_P(ToolCodes, ComeFromTheVersionsAttribute) {
  tdbError error;
  const std::unique_ptr<tdbTool> tool(tdbXmlReader::ImportToolFromXml(
      tool_with("", GetParam().attributes).c_str(), kNoPaths, error, nullptr));
  ASSERT_TRUE(tool);
  EXPECT_EQ(tool->GetCode(), GetParam().code);
}
INSTANTIATE_TEST_SUITE_P(Attributes, ToolCodes, testing::ValuesIn(kCodes),
                         [](const auto& row) { return std::string(row.param.name); });

// Placements of a holder, as the angles and position that they come to.
struct PoseCase {
  const char* name;
  const char* attributes;
  const char* children;
  EulerAngles angles;
  Vec3d<double> origin = {};
};
const PoseCase kPoses[] = {
    {"None", "", "", {}},
    {"Attributes", "POSX='1' POSZ='-2' RY='90'", "", {0, 90, 0}, {1, 0, -2}},
    {"AttributesWin", "POSX='1'", "<ALPHA>30</ALPHA><TRANS>7 7 7</TRANS>", {}, {1, 0, 0}},
    {"Trans", "", "<TRANS> 1\t2 3 </TRANS>", {}, {1, 2, 3}},
    {"ShortTrans", "", "<TRANS>1</TRANS>", {}, {1, 0, 0}},
    {"Rot", "", "<TRANS>1 2 3</TRANS><ROT TYPE='ZYX'>90 0 30</ROT>", {90, 0, 30}, {1, 2, 3}},
    {"Quat", "", "<QUAT>0 0 2 2</QUAT>", {90, 0, 0}},
    {"QuatTurnedX", "", "<QUAT>1 0 0 0</QUAT>", {0, 0, 180}},
    {"QuatOfZeros", "", "<QUAT>0 0 0 0</QUAT><TRANS>1 2 3</TRANS>", {}, {1, 2, 3}},
    {"AlphaBeta", "", "<ALPHA>30</ALPHA><BETA>90</BETA>", {0, 90, 30}},
    {"Wrapped", "", "<TRANSFORMATION><TRANS>1 2 3</TRANS></TRANSFORMATION>", {}, {1, 2, 3}},
};
class Poses : public testing::TestWithParam<PoseCase> {};
TEST_P(Poses, OfEveryLayout) {
  const auto tool =
      tool_from(tool_with("<HOLDER TYPE='CONE' " + std::string(GetParam().attributes) + ">" +
                          GetParam().children + "</HOLDER>"));
  const auto pose = tool->GetItem(0)->GetPos();
  const auto expected = join_zyx(GetParam().angles, GetParam().origin);
  for (int i = 0; i < 16; ++i) EXPECT_NEAR(pose(i / 4, i % 4), expected(i / 4, i % 4), 1e-15);
}
INSTANTIATE_TEST_SUITE_P(Layouts, Poses, testing::ValuesIn(kPoses),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(ItemReader, EveryTypeNameIsRead) {
  const auto expect_types = [](const char* element, auto& table) {
    for (const TypeName& type : table) {
      const auto tool = tool_from(
          tool_with("<" + std::string(element) + " TYPE='" + std::string(type.name) + "'/>"));
      EXPECT_EQ(tool->GetItem(0)->GetType(), type.code) << type.name;
    }
  };
  expect_types("CUTTER", kCutterTypes);
  expect_types("SHANK", kShankTypes);
  expect_types("HOLDER", kHolderTypes);
  expect_types("CUTTINGTOOL", kCuttingToolTypes);
  expect_types("ANGLEHEAD", kAngleHeadTypes);
  EXPECT_EQ(tool_from(tool_with("<CUTTINGTOOL TYPE='UNDEF'/>"))->GetItem(0)->GetType(), -1);
}

TEST(ItemReader, AnyOtherTextIsAParameter) {
  const auto tool =
      tool_from(tool_with("<CUTTER TYPE='FLAT'><Piece> 1 2 </Piece><EXTRUDED_HMAX/><D>1</D><D>2</D>"
                          "<PARAM NAME='a b'>x</PARAM><NEW><DEEP/></NEW></CUTTER>"));
  const std::map<std::string, std::string> expected = {
      {"Piece", " 1 2 "}, {"EXTRUDED_HMAX", ""}, {"D", "2"}, {"a b", "x"}};
  EXPECT_EQ(tool->GetItem(0)->GetParams(), expected);  // none of the constructor's
  ASSERT_EQ(tool->GetErrs().size(), 1U);
  EXPECT_NE(tool->GetErrs()[0].message.find("<NEW> is not known"), std::string::npos);
}

TEST(ItemReader, FileColorAndSwitches) {
  const std::vector<std::string> paths = {"/lib"};
  const auto tool = tool_from(
      tool_with(
          "<HOLDER TYPE='custom_revoluted' NAME=' a\nb ' ENSPIN='FALSE' INTERF_INH='no' "
          "INTERF_TYPE='NEAR_MISS' INTERF_VAL='0.5'><FILE UNIT='INCHES'> x/a.stl </FILE>"
          "<COLOR>0.5 1</COLOR><PROFILE> <A DIR=\"CW\" ><!-- c --></A >\r\n</PROFILE></HOLDER>"
          "<HOLDER TYPE='STL'><FILE UNIT='inches'/></HOLDER>"
          "<CUTTINGTOOL TYPE='TAP'><CUTTER TYPE='TAP'><B> </B></CUTTER></CUTTINGTOOL>"),
      ComponentShelf().Finder(), paths);
  const tdbItem& holder = *tool->GetItem(0);
  EXPECT_EQ(holder.GetName(), "ab");
  EXPECT_FALSE(holder.IsSpinningEnable());
  EXPECT_FALSE(holder.GetInterferenceSettings().inherit);
  EXPECT_EQ(holder.GetInterferenceSettings().type, 1);
  EXPECT_EQ(holder.GetInterferenceSettings().value, 0.5);
  EXPECT_EQ(holder.GetFileUnits(), 1);
  EXPECT_STREQ(holder.GetShapeFilePath(), "/lib/x/a.stl");
  EXPECT_TRUE(holder.GetMaterial() == tdbToolMaterial(0.5F, 1, 0, 0, "steel.jpg"));
  EXPECT_STREQ(holder.GetProfileXml(), " <A DIR=\"CW\" ><!-- c --></A >\r\n");
  EXPECT_EQ(tool->GetItem(1)->GetFileUnits(), 0);
  ASSERT_EQ(tool->GetCutterCount(), 1);
  EXPECT_STREQ(tool->GetCutter(0)->GetParam("B", ""), " ");
  EXPECT_TRUE(tool->GetItem(1)->GetInterferenceSettings().inherit);
}

TEST(ItemReader, PartsHaveTheUnitOfTheirTool) {
  const auto tool = tool_from(tool_with(
      "<CUTTINGTOOL TYPE='DRILL'><CUTTER TYPE='DRILL'/></CUTTINGTOOL>", "UNITS='INCHES'"));
  EXPECT_EQ(tool->GetCutter(0)->GetUnitOfMeasurement(), 1);
}

// Where parts hang: "name<parent" for each, in tree order.
std::string hanging(tdbCompositeItem& root) {
  std::string text;
  for (const tdbItem* item : items_below(root)) {
    text += item->GetName() + "<" + item->GetParent()->GetName() + " ";
  }
  return text;
}

std::string holder(const std::string& name, const std::string& parent) {
  return "<HOLDER TYPE='CONE' NAME='" + name + "' PARENT='" + parent + "'/>";
}

struct ParentCase {
  const char* name;
  std::string children;
  const char* tree;
  int errors = 0;
};
const ParentCase kParents[] = {
    {"Empty", holder("a", "") + holder("b", ""), "a<T b<T "},
    {"ToolByName", holder("a", "T"), "a<T "},
    {"Chain", holder("a", "T") + holder("b", "a") + holder("c", "b"), "a<T b<a c<b "},
    {"Missing", holder("a", "nobody"), "a<T ", 1},
    {"NameLikeAChain", holder("\\a", "") + holder("b", "\\a"), "\\a<T b<\\a "},
    {"LaterOnesAreNotSeen", holder("a", "b") + holder("b", ""), "a<T b<T ", 1},
    {"CaseMatters", holder("a", "") + holder("b", "A"), "a<T b<T ", 1},
    {"LastOfAName", holder("a", "") + holder("a", "") + holder("b", "a"), "a<T a<T b<a "},
    {"OpenOneBeforeLast",
     holder("a", "") + holder("b", "a") + holder("a", "b") + holder("c", "b") + holder("d", "a"),
     "a<T b<a a<b c<b d<a "},
    {"NotOnACutter", "<CUTTER TYPE='FLAT' NAME='a'/>" + holder("b", "a"), "a<T b<T ", 1},
    {"InCuttingTool",
     holder("s", "") + "<CUTTINGTOOL TYPE='DRILL' NAME='g'><SHANK TYPE='CONE' NAME='s'/>" +
         holder("x", "s") + holder("y", "nobody") + "</CUTTINGTOOL>" + holder("z", "s"),
     "s<T z<s g<T s<g x<s y<g "},
    {"OldCutterBesideItsGroup",
     "<CUTTINGTOOL TYPE='DRILL' NAME='g'/><CUTTER TYPE='FLAT' NAME='c' PARENT='g'/>", "g<T c<g "},
    {"Use",
     "<TOOLCOMPONENT CODE='K' NAME='k'/>" + holder("a", "k") + holder("b", "\\T\\k\\m") +
         holder("c", "m"),
     "k<T m<k b<m a<k c<T ", 1},
    {"UseUnresolved", "<TOOLCOMPONENT CODE='?' NAME='k'/>", "k<T ", 1},
    {"UseWithContent", "<TOOLCOMPONENT CODE='K' NAME='k'>" + holder("a", "k") + "</TOOLCOMPONENT>",
     "k<T m<k ", 1},
    {"Definition",
     "<TOOLCOMPONENT NAME='k'>" + holder("a", "k") + holder("b", "a") + "</TOOLCOMPONENT>" +
         holder("c", "\\T\\k\\a\\b") + holder("d", "a"),
     "k<T a<k b<a c<b d<T ", 1},
    {"HolderOfTheLibrary",
     "<HOLDER TYPE='FROMCOMPONENTSLIB' NAME='h'><COMPONENT_CODE>K</COMPONENT_CODE></HOLDER>",
     "h<T m<h "},
};

class Parents : public testing::TestWithParam<ParentCase> {};
TEST_P(Parents, AreFound) {
  ComponentShelf shelf;
  auto component = std::make_unique<tdbToolComponent>(0, "K", "K");
  auto member = std::make_unique<tdbFixedLink>(0);
  member->SetName("m");
  component->AddItem(member.release());
  shelf.Put(std::move(component));
  const auto tool = tool_from(tool_with(GetParam().children), shelf.Finder());
  EXPECT_EQ(hanging(*tool), GetParam().tree);
  EXPECT_EQ(tool->GetErrs().size(), static_cast<std::size_t>(GetParam().errors));
}
INSTANTIATE_TEST_SUITE_P(Trees, Parents, testing::ValuesIn(kParents),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Components, MembersAreMarkedAndUsesAreNot) {
  const auto component = read_as<tdbToolComponent>(
      "<TOOLCOMPONENT NAME='k' CODE='c' VER='7'><CUTTINGTOOL TYPE='DRILL'><CUTTER TYPE='DRILL'/>"
      "</CUTTINGTOOL></TOOLCOMPONENT>",
      ComponentShelf().Finder());
  EXPECT_EQ(component->GetCode(), "c");
  EXPECT_EQ(component->GetVersion(), 7);
  EXPECT_TRUE(component->IsComponent());
  for (const tdbItem* item : items_below(*component)) EXPECT_TRUE(item->IsComponent());
  EXPECT_FALSE(tool_from(tool_with("<TOOLCOMPONENT CODE='?'/>"))->GetItem(0)->IsComponent());
}

// What cannot be taken over is left out or empty, and noted on the tool.
struct NoteCase {
  const char* name;
  std::string tool;
  int code;
  const char* message;  // its beginning; empty when there is nothing to note
};
const NoteCase kNotes[] = {
    {"MissingComponent", tool_with("\n<TOOLCOMPONENT CODE='K-9'/>"), 21,
     "line 2: component \"K-9\" is not in the components library"},
    {"LibraryHolderInAComponent",
     tool_with("<TOOLCOMPONENT NAME='k'>\n<HOLDER TYPE='FROMCOMPONENTSLIB'><COMPONENT_CODE>K"
               "</COMPONENT_CODE></HOLDER></TOOLCOMPONENT>"),
     1, "line 2: a holder inside a component cannot be taken from the library"},
    {"UnknownElement", tool_with("<DESCR>a</DESCR>\n\n<SPARE/>"), 1,
     "line 3: the element <SPARE> is not known"},
    {"OlderPlaceOfTheTool", tool_with("<TRANS>1 2 3</TRANS><QUAT>1 0 0 0</QUAT>"), 0, ""},
};

class Notes : public testing::TestWithParam<NoteCase> {};
TEST_P(Notes, NameTheLine) {
  const auto errors = tool_from(GetParam().tool)->GetErrs();
  ASSERT_EQ(errors.size(), GetParam().code == 0 ? 0U : 1U);
  for (const tdbError& error : errors) {
    EXPECT_EQ(error.code, GetParam().code);
    EXPECT_EQ(error.message.find(GetParam().message), 0U) << error.message;
  }
}
INSTANTIATE_TEST_SUITE_P(Elements, Notes, testing::ValuesIn(kNotes),
                         [](const auto& row) { return std::string(row.param.name); });

// Conditions: one element each, the value that it gives, by the milling and the turning reader.
struct ConditionCase {
  const char* name;
  const char* section;
  const char* element;
  double (*value)(const tdbCutCond&);
  double expected;
};
constexpr char kData[] = "CUTCOND_PARAMS";
constexpr char kVerify[] = "VERIFY_CUTCOND";
constexpr char kOptimize[] = "OPTIMIZE_CUTCOND";

const ConditionCase kConditions[] = {
    {"OffsetZero", kData, "<SAMPLES_OFFSET>0</SAMPLES_OFFSET>",
     [](auto& c) { return c.GetSamplesOffset(); }, 0.0025},
    {"OffsetEmpty", kData, "<SAMPLES_OFFSET/>", [](auto& c) { return c.GetSamplesOffset(); },
     0.0025},
    {"OffsetZeroes", kData, "<SAMPLES_OFFSET>0.0</SAMPLES_OFFSET>",
     [](auto& c) { return c.GetSamplesOffset(); }, 0},
    {"StepEmpty", kData, "<STEP_SIZE_OF_SAMPLING></STEP_SIZE_OF_SAMPLING>",
     [](auto& c) { return c.GetStepSizeOfSampling(); }, 5},
    {"StepZero", kData, "<STEP_SIZE_OF_SAMPLING>0</STEP_SIZE_OF_SAMPLING>",
     [](auto& c) { return c.GetStepSizeOfSampling(); }, 5},
    {"LinearLow", kData, "<TOOL_MODEL_ACCURACY_LINEAR_TOL>0.005</TOOL_MODEL_ACCURACY_LINEAR_TOL>",
     [](auto& c) { return c.GetSectorHeigth(); }, 1},
    {"LinearLowest", kData, "<TOOL_MODEL_ACCURACY_LINEAR_TOL>0.01</TOOL_MODEL_ACCURACY_LINEAR_TOL>",
     [](auto& c) { return c.GetSectorHeigth(); }, 0.01},
    {"LinearHigh", kData, "<TOOL_MODEL_ACCURACY_LINEAR_TOL>10.1</TOOL_MODEL_ACCURACY_LINEAR_TOL>",
     [](auto& c) { return c.GetSectorHeigth(); }, 1},
    {"LinearEmpty", kData, "<TOOL_MODEL_ACCURACY_LINEAR_TOL/>",
     [](auto& c) { return c.GetSectorHeigth(); }, 1},
    {"AngularHigh", kData, "<TOOL_MODEL_ACCURACY_ANGULAR_TOL>50</TOOL_MODEL_ACCURACY_ANGULAR_TOL>",
     [](auto& c) { return c.GetSectorAngle(); }, 20},
    {"AngularHighest", kData,
     "<TOOL_MODEL_ACCURACY_ANGULAR_TOL>45</TOOL_MODEL_ACCURACY_ANGULAR_TOL>",
     [](auto& c) { return c.GetSectorAngle(); }, 45},
    {"AngularLow", kData, "<TOOL_MODEL_ACCURACY_ANGULAR_TOL>2.9</TOOL_MODEL_ACCURACY_ANGULAR_TOL>",
     [](auto& c) { return c.GetSectorAngle(); }, 20},
    {"Level12", kData, "<TOOL_MODEL_ACCURACY>12</TOOL_MODEL_ACCURACY>",
     [](auto& c) { return c.GetSectorHeigth(); }, 0.3},
    {"Level9Angle", kData, "<TOOL_MODEL_ACCURACY>9</TOOL_MODEL_ACCURACY>",
     [](auto& c) { return c.GetSectorAngle(); }, 5},
    {"Level1", kData, "<TOOL_MODEL_ACCURACY>1</TOOL_MODEL_ACCURACY>",
     [](auto& c) { return c.GetSectorHeigth(); }, 3},
    {"LevelEmpty", kData, "<TOOL_MODEL_ACCURACY/>", [](auto& c) { return c.GetSectorAngle(); }, 12},
    {"NoNumber", kData, "<DC>wide</DC>", [](auto& c) { return c.GetDc(); }, 0},
    {"Unknown", kData, "<DCX>3</DCX>", [](auto& c) { return c.GetDc(); }, 10},
    {"NameInLowerCase", kData, "<dc>3</dc>", [](auto& c) { return c.GetDc(); }, 10},
    {"OtherSection", kVerify, "<DC>3</DC>", [](auto& c) { return c.GetDc(); }, 10},
    {"FlagLowerCase", kVerify, "<VERIFY_AP ENABLE='true'/>",
     [](auto& c) { return double(c.GetVerifyAp()); }, 0},
    {"Flag", kVerify, "<VERIFY_AP ENABLE='TRUE'/>", [](auto& c) { return double(c.GetVerifyAp()); },
     1},
    {"LimitMissing", kVerify, "<VERIFY_FEED ENABLE='TRUE' MIN='7'/>",
     [](auto& c) { return c.GetVerifyFeed().maximum; }, 30000},
    {"Average", kVerify, "<VERIFY_POWER MAX='3' AVERAGE='2'/>",
     [](auto& c) { return c.GetVerifyPower().average; }, 2},
    {"Penetration", kVerify, "<VERIFY_PENETRATION_ANGLE MAX='3'/>",
     [](auto& c) { return c.GetMaxPenetrationAngle(); }, 3},
    {"Criterion", kOptimize, "<OPTIMIZATION_CRITERION>3</OPTIMIZATION_CRITERION>",
     [](auto& c) { return double(c.GetOptimizationCriteria()); }, 3},
    {"CriterionUnknown", kOptimize, "<OPTIMIZATION_CRITERION>4</OPTIMIZATION_CRITERION>",
     [](auto& c) { return double(c.GetOptimizationCriteria()); }, 0},
    {"Optimal", kOptimize, "<OPTIMIZE_TORQUE ENABLE_OPT='TRUE' OPTIMAL='3' LIMIT='TRUE' MAX='4'/>",
     [](auto& c) { return c.GetOptimTorque().optimal; }, 3},
    {"OtherBlock", "CUTCOND_DATA", "<DC>3</DC>", [](auto& c) { return c.GetDc(); }, 10},
};

class ConditionsReader : public testing::TestWithParam<ConditionCase> {};
TEST_P(ConditionsReader, TakesNamesDefaultsAndRanges) {
  const ConditionCase& row = GetParam();
  const std::string section(row.section);
  const auto tool = tool_from(tool_with("<CUTCOND VER='9'><" + section + " NUMBER_OF_SAMPLES=''>" +
                                        row.element + "</" + section + "></CUTCOND>"));
  EXPECT_EQ(row.value(tool->GetCutCond()), row.expected);
  EXPECT_EQ(tool->GetCutCond().GetVersion(), 9);
  EXPECT_EQ(tool->GetCutCond().GetNumberOfSamplesToCalcAvg(), 10);
}
INSTANTIATE_TEST_SUITE_P(Elements, ConditionsReader, testing::ValuesIn(kConditions),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(ConditionsReader, TurningToolsFillTheirOwn) {
  const auto tool = tool_from(tool_with(
      "<CUTCOND><CUTCOND_PARAMS><AP>7</AP><CORNER_RADIUS>0.4</CORNER_RADIUS></CUTCOND_PARAMS>"
      "<VERIFY_CUTCOND NUMBER_OF_SAMPLES='3'/><OPTIMIZE_CUTCOND><OPTIMIZE_ROUGHNESS_DEPTH "
      "ENABLE_OPT='TRUE' LIMIT='FALSE'/></OPTIMIZE_CUTCOND></CUTCOND>",
      "TYPE='BORE'"));
  EXPECT_EQ(tool->GetTurningCutCond().GetAp(), 7);
  EXPECT_EQ(tool->GetTurningCutCond().GetCornerRadius(), 0.4);
  EXPECT_EQ(tool->GetTurningCutCond().GetNumberOfSamplesToCalcAvg(), 3);
  EXPECT_TRUE(tool->GetTurningCutCond().GetOptimRoughnessDepth().optimized);
  EXPECT_FALSE(tool->GetTurningCutCond().GetOptimRoughnessDepth().limited);
  EXPECT_TRUE(tool->GetCutCond() == tdbCutCond());
}

}  // namespace
}  // namespace tooldb
