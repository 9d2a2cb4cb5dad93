#include "tooldb/cutting_conditions.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace {

template <class Cond>
class CuttingConditions : public testing::Test {};
using BothKinds = testing::Types<tdbCutCond, tdbTurningCutCond>;
TYPED_TEST_SUITE(CuttingConditions, BothKinds);

TYPED_TEST(CuttingConditions, NewOnesRequireNothing) {
  TypeParam cond;
  EXPECT_FALSE(cond.RequiresCutConditionVerify());
  EXPECT_FALSE(cond.RequiresCutConditionOpti());
  EXPECT_FALSE(cond.RequiresAnyCutCondition());
  EXPECT_EQ(cond.GetOptimizationCriteria(), 0);
}

TYPED_TEST(CuttingConditions, CriteriaAreTwoFlags) {
  TypeParam cond;
  for (const int criteria : {0, 1, 2, 3}) {
    cond.SetOptimizationCriteria(criteria);
    EXPECT_EQ(cond.GetOptimizationCriteria(), criteria);
    for (const int other : {-1, 4, 7}) cond.SetOptimizationCriteria(other);
    EXPECT_EQ(cond.GetOptimizationCriteria(), criteria);
  }
  cond.ClearOptimizationCriteria();
  EXPECT_EQ(cond.GetOptimizationCriteria(), 0);
}

TYPED_TEST(CuttingConditions, OnlyTheSecondCriterionAsksForOptimisation) {
  for (const bool limit : {false, true}) {
    TypeParam cond;
    (limit ? cond.GetOptimPower().limited : cond.GetOptimPower().optimized) = true;
    cond.SetOptimizationCriteria(1);
    EXPECT_FALSE(cond.RequiresCutConditionOpti());
    cond.SetOptimizationCriteria(2);
    EXPECT_TRUE(cond.RequiresCutConditionOpti());
    EXPECT_TRUE(cond.RequiresAnyCutCondition());
  }
}

template <class Cond>
struct CondChange {
  const char* name;
  std::function<void(Cond&)> apply;
  bool verify;  ///< does the change ask for a verification?
};

template <class Cond>
void expect_changes(const std::vector<CondChange<Cond>>& changes) {
  for (const auto& change : changes) {
    const Cond original;
    Cond changed;
    change.apply(changed);
    EXPECT_NE(original, changed) << change.name;
    EXPECT_EQ(changed.RequiresCutConditionVerify(), change.verify) << change.name;
    const std::unique_ptr<Cond> clone(changed.Clone());
    EXPECT_EQ(*clone, changed) << change.name;
  }
}

/// Changes that both kinds know.
template <class Cond>
std::vector<CondChange<Cond>> shared_changes() {
  return {
      {"Feed", [](Cond& c) { c.GetVerifyFeed().enabled = true; }, true},
      {"FeedMinimum", [](Cond& c) { c.GetVerifyFeed().minimum = 1; }, false},
      {"Spindle", [](Cond& c) { c.GetVerifySpindle().enabled = true; }, true},
      {"DepthOfCut", [](Cond& c) { c.SetVerifyAp(true); }, true},
      {"VolumeRate", [](Cond& c) { c.GetVerifyVolumeRate().enabled = true; }, true},
      {"ChipThickness", [](Cond& c) { c.GetVerifyChipThickness().enabled = true; }, true},
      {"Power", [](Cond& c) { c.GetVerifyPower().enabled = true; }, true},
      {"PowerAverage", [](Cond& c) { c.GetVerifyPower().average = 1; }, false},
      {"Optimal", [](Cond& c) { c.GetOptimVolumeRate().optimal = 1; }, false},
      {"AirCut", [](Cond& c) { c.SetAirCutFeed(1); }, false},
      {"InCut", [](Cond& c) { c.SetInCutFeedLimit(1); }, false},
      {"MaxProgrammed", [](Cond& c) { c.SetMaxProgrammedFeed(1); }, false},
      {"MinProgrammed", [](Cond& c) { c.SetMinProgrammedFeed(1); }, false},
      {"Samples", [](Cond& c) { c.SetNumberOfSamplesToCalcAvg(1); }, false},
      {"Step", [](Cond& c) { c.SetStepSizeOfSampling(1); }, false},
      {"Approach", [](Cond& c) { c.SetApproachAngle(1); }, false},
      {"Ap", [](Cond& c) { c.SetAp(1); }, false},
      {"Recording", [](Cond& c) { c.SetEnableDataRecording(true); }, false},
      {"Version", [](Cond& c) { c.SetVersion(9); }, false},
      {"Criteria", [](Cond& c) { c.SetOptimizationCriteria(1); }, false},
  };
}

TEST(MillingConditions, EveryFieldIsComparedAndCopied) {
  auto changes = shared_changes<tdbCutCond>();
  changes.insert(
      changes.end(),
      {{"Torque", [](auto& c) { c.GetVerifyTorque().enabled = true; }, true},
       {"PenetrationAloneDoesNotCount", [](auto& c) { c.SetVerifyPenetrationAngle(true); }, false},
       {"MaxPenetration", [](auto& c) { c.SetMaxPenetrationAngle(1); }, false},
       {"OptimTorque", [](auto& c) { c.GetOptimTorque().limited = true; }, false},
       {"Inserts", [](auto& c) { c.SetNumberOfInsert(1); }, false},
       {"Rake", [](auto& c) { c.SetRakeAngle(1); }, false},
       {"Dc", [](auto& c) { c.SetDc(1); }, false},
       {"Di", [](auto& c) { c.SetDi(1); }, false},
       {"SectorHeight", [](auto& c) { c.SetSectorHeigth(2); }, false},
       {"SectorAngle", [](auto& c) { c.SetSectorAngle(1); }, false},
       {"SamplesOffset", [](auto& c) { c.SetSamplesOffset(1); }, false}});
  expect_changes(changes);
}

TEST(TurningConditions, EveryFieldIsComparedAndCopied) {
  auto changes = shared_changes<tdbTurningCutCond>();
  changes.insert(
      changes.end(),
      {{"ChipSection", [](auto& c) { c.GetVerifyChipSection().enabled = true; }, true},
       {"ChipWidth", [](auto& c) { c.GetVerifyChipWidth().enabled = true; }, true},
       {"Roughness", [](auto& c) { c.GetVerifyRoughnessDepth().enabled = true; }, true},
       {"OptimSection", [](auto& c) { c.GetOptimChipSection().optimized = true; }, false},
       {"OptimWidth", [](auto& c) { c.GetOptimChipWidth().optimized = true; }, false},
       {"OptimRoughness", [](auto& c) { c.GetOptimRoughnessDepth().maximum = 1; }, false},
       {"CornerRadius", [](auto& c) { c.SetCornerRadius(2); }, false}});
  expect_changes(changes);
}

}  // namespace
