// Comparison sees every field that describes a thing, and copies carry it.

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <span>
#include <type_traits>

#include "geom/euler_angles.h"
#include "tooldb/cutting_conditions.h"
#include "tooldb/tool.h"
#include "tooldb/tool_parts.h"

namespace {

Transformation<double> at(double x, double z) { return tooldb::join_zyx({}, {x, 0, z}); }

enum Effect { kSeen, kNotSeen, kAsksToVerify };

template <class Thing>
struct Change {
  const char* name;
  void (*apply)(Thing& thing);
  Effect effect = kSeen;
};

template <class Thing>
void expect_seen(const Thing& original,
                 std::type_identity_t<std::span<const Change<Thing>>> changes) {
  for (const auto& change : changes) {
    SCOPED_TRACE(change.name);
    Thing changed(original);
    change.apply(changed);
    EXPECT_EQ(changed == original, change.effect == kNotSeen);
    EXPECT_EQ(changed != original, change.effect != kNotSeen);
    const bool equals_itself = changed == changed;  // not where a number is none
    Thing assigned(original);
    assigned = changed;
    EXPECT_EQ(assigned == changed, equals_itself);
    EXPECT_EQ(Thing(changed) == changed, equals_itself);
    const std::unique_ptr<std::remove_pointer_t<decltype(changed.Clone())>> clone(changed.Clone());
    EXPECT_EQ(dynamic_cast<Thing&>(*clone) == changed, equals_itself);
    if constexpr (requires { changed.RequiresCutConditionVerify(); }) {
      EXPECT_EQ(changed.RequiresCutConditionVerify(), change.effect == kAsksToVerify);
    }
  }
}

const tdbInterferenceSettings kOwnInterference{false, 1, 2};

tdbLegacyToolData spinning_at_5() {
  tdbLegacyToolData data;
  data.max_spindle = 5;
  return data;
}

const Change<tdbToolHolder> kItemChanges[] = {
    {"Name", [](auto& i) { i.SetName("n"); }},
    {"Code", [](auto& i) { i.SetCode("c"); }},
    {"Version", [](auto& i) { i.SetVersion(2); }},
    {"Flags", [](auto& i) { i.SetFlags(4); }},
    {"Type", [](auto& i) { i.SetType(2); }},
    {"Red", [](auto& i) { i.GetMaterial().red = 0; }},
    {"Map", [](auto& i) { i.GetMaterial().environmentMap = "m"; }},
    {"FileUnits", [](auto& i) { i.SetFileUnits(1); }},
    {"ShapeFile", [](auto& i) { i.SetShapeFilePath("f"); }},
    {"Options", [](auto& i) { i.SetFileOptions("o"); }},
    {"Pos", [](auto& i) { i.SetPos(at(0, 1e-300)); }},
    {"NanPos", [](auto& i) { i.SetPos(at(std::nan(""), 0)); }},
    {"ShapePos", [](auto& i) { i.SetShapePos(at(1, 0)); }},
    {"Profile", [](auto& i) { i.SetProfileXml("p"); }},
    {"Component", [](auto& i) { i.SetItemComponent(true); }},
    {"Spinning", [](auto& i) { i.SetEnableSpinning(true); }},
    {"Param", [](auto& i) { i.SetParam("A", ""); }},
    {"Unit", [](auto& i) { i.SetUnitOfMeasurement(1); }},
    {"Child", [](auto& i) { i.AddItem(new tdbFixedLink(0)); }},
    {"Modified", [](auto& i) { i.SetModified(true); }, kNotSeen},
    {"Hidden", [](auto& i) { i.HideShape(true); }, kNotSeen},
    {"Interference", [](auto& i) { i.SetInterferenceSettings(kOwnInterference); }, kNotSeen},
};

TEST(Equality, OfItems) { expect_seen<tdbToolHolder>(tdbToolHolder(1), kItemChanges); }

const Change<tdbTool> kToolChanges[] = {
    {"Description", [](auto& t) { t.SetDescr("d"); }},
    {"Comment", [](auto& t) { t.SetComment("c"); }},
    {"Color", [](auto& t) { t.SetTraceColor(2); }},
    {"AutoColor", [](auto& t) { t.SetAutoColor(false); }},
    {"Pair", [](auto& t) { t.AddParam("A", "1"); }},
    {"Offset", [](auto& t) { t.AddOffsetParam(OFFSET_VALUE()); }},
    {"Tolerance", [](auto& t) { t.SetToolModelTolerance(1); }},
    {"OffsetY", [](auto& t) { t.SetOffsetY(1); }},
    {"Diameter", [](auto& t) { t.SetDiameter(1); }},
    {"DeltaZ", [](auto& t) { t.SetDeltaZ(1); }},
    {"AutoTcp", [](auto& t) { t.SetAutoTcp(false); }},
    {"SubType", [](auto& t) { t.SetSubType(7); }},
    {"Milling", [](auto& t) { t.GetCutCond().SetDc(3); }},
    {"Turning", [](auto& t) { t.GetTurningCutCond().SetCornerRadius(3); }},
    {"Section", [](auto& t) { t.EnableSection(true); }},
    {"SectionStart", [](auto& t) { t.SetSectionStartAngle(1); }},
    {"SectionSpan", [](auto& t) { t.SetSectionSpanAngle(1); }},
    {"Extension", [](auto& t) { t.SetCutterExtensionEnabled(true); }},
    {"ExtensionValue", [](auto& t) { t.SetCutterExtensionValue(0); }},
    {"ExtensionStep", [](auto& t) { t.SetCutterExtensionStep(0); }},
    {"ExtensionMax", [](auto& t) { t.SetCutterExtensionMax(0); }},
    {"Legacy", [](auto& t) { t.SetLegacyData(spinning_at_5()); }, kNotSeen},
};

TEST(Equality, OfTools) { expect_seen<tdbTool>(tdbTool("T1"), kToolChanges); }

template <class Conditions>
const Change<Conditions> kSharedChanges[] = {
    {"Feed", [](auto& c) { c.GetVerifyFeed().enabled = true; }, kAsksToVerify},
    {"FeedMinimum", [](auto& c) { c.GetVerifyFeed().minimum = 1; }},
    {"Spindle", [](auto& c) { c.GetVerifySpindle().enabled = true; }, kAsksToVerify},
    {"DepthOfCut", [](auto& c) { c.SetVerifyAp(true); }, kAsksToVerify},
    {"VolumeRate", [](auto& c) { c.GetVerifyVolumeRate().enabled = true; }, kAsksToVerify},
    {"ChipThickness", [](auto& c) { c.GetVerifyChipThickness().enabled = true; }, kAsksToVerify},
    {"Power", [](auto& c) { c.GetVerifyPower().enabled = true; }, kAsksToVerify},
    {"PowerAverage", [](auto& c) { c.GetVerifyPower().average = 1; }},
    {"Optimal", [](auto& c) { c.GetOptimVolumeRate().optimal = 1; }},
    {"AirCut", [](auto& c) { c.SetAirCutFeed(1); }},
    {"InCut", [](auto& c) { c.SetInCutFeedLimit(1); }},
    {"MaxProgrammed", [](auto& c) { c.SetMaxProgrammedFeed(1); }},
    {"MinProgrammed", [](auto& c) { c.SetMinProgrammedFeed(1); }},
    {"Samples", [](auto& c) { c.SetNumberOfSamplesToCalcAvg(1); }},
    {"Step", [](auto& c) { c.SetStepSizeOfSampling(1); }},
    {"Approach", [](auto& c) { c.SetApproachAngle(1); }},
    {"Ap", [](auto& c) { c.SetAp(1); }},
    {"Recording", [](auto& c) { c.SetEnableDataRecording(true); }},
    {"Version", [](auto& c) { c.SetVersion(9); }},
    {"Criteria", [](auto& c) { c.SetOptimizationCriteria(1); }},
};

const Change<tdbCutCond> kMillingChanges[] = {
    {"Torque", [](auto& c) { c.GetVerifyTorque().enabled = true; }, kAsksToVerify},
    {"PenetrationAloneDoesNotCount", [](auto& c) { c.SetVerifyPenetrationAngle(true); }},
    {"MaxPenetration", [](auto& c) { c.SetMaxPenetrationAngle(1); }},
    {"OptimTorque", [](auto& c) { c.GetOptimTorque().limited = true; }},
    {"Inserts", [](auto& c) { c.SetNumberOfInsert(1); }},
    {"Rake", [](auto& c) { c.SetRakeAngle(1); }},
    {"Dc", [](auto& c) { c.SetDc(1); }},
    {"Di", [](auto& c) { c.SetDi(1); }},
    {"SectorHeight", [](auto& c) { c.SetSectorHeigth(2); }},
    {"SectorAngle", [](auto& c) { c.SetSectorAngle(1); }},
    {"SamplesOffset", [](auto& c) { c.SetSamplesOffset(1); }},
};

const Change<tdbTurningCutCond> kTurningChanges[] = {
    {"ChipSection", [](auto& c) { c.GetVerifyChipSection().enabled = true; }, kAsksToVerify},
    {"ChipWidth", [](auto& c) { c.GetVerifyChipWidth().enabled = true; }, kAsksToVerify},
    {"Roughness", [](auto& c) { c.GetVerifyRoughnessDepth().enabled = true; }, kAsksToVerify},
    {"OptimSection", [](auto& c) { c.GetOptimChipSection().optimized = true; }},
    {"OptimWidth", [](auto& c) { c.GetOptimChipWidth().optimized = true; }},
    {"OptimRoughness", [](auto& c) { c.GetOptimRoughnessDepth().maximum = 1; }},
    {"CornerRadius", [](auto& c) { c.SetCornerRadius(2); }},
};

TEST(Equality, OfConditions) {
  expect_seen<tdbCutCond>({}, kSharedChanges<tdbCutCond>);
  expect_seen<tdbCutCond>({}, kMillingChanges);
  expect_seen<tdbTurningCutCond>({}, kSharedChanges<tdbTurningCutCond>);
  expect_seen<tdbTurningCutCond>({}, kTurningChanges);
}

}  // namespace
